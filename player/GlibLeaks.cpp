// Linked with what plays where a sanitizer looks for leaks.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __asan_default_options();

// What GLib leaves behind on purpose when its table of names grows, allocated when the library is loaded.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:_dl_init\n";
}

// GLib has no frame pointers: by the quick way no stack would reach the line that is named above.
extern "C" const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
