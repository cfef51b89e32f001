// Linked with what plays where a sanitizer looks for leaks.
// The names are the run time's. NOLINTBEGIN(readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();
extern "C" const char* __asan_default_options();

// What GLib leaves behind on purpose when its table of names grows, allocated when the library is loaded; and what
// GStreamer's source of HTTP keeps of a connection that was ended while it was made.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:_dl_init\nleak:libgstsoup.so\n";
}

// Standard error is the log of the process, in which nothing else may stand.
extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

// GLib has no frame pointers: by the quick way no stack would reach the line that is named above.
extern "C" const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
// NOLINTEND(readability-identifier-naming)
