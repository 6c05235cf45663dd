// JavaScriptCore keeps a few bytes for each thread that runs JavaScript and loses them when the thread ends.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libjavascriptcoregtk\n";
}
