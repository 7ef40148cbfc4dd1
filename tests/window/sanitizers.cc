/// Qt's engine keeps memory of its own to the end: leaks are looked for in all but the window.
extern "C" int __lsan_is_turned_off();
extern "C" int __lsan_is_turned_off() { return 1; }

extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "suppressions=" QUORIN_SOURCE_DIR "/tests/races.supp";
}
