// What GLib leaves behind on purpose when its table of names grows, allocated when the library is loaded.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:_dl_init\n";
}
