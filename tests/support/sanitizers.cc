// What the sanitizers are told; without them nobody asks.

/// The packaged protobuf library is not instrumented: containers that it grew look overgrown.
extern "C" const char* __asan_default_options() { return "detect_container_overflow=0"; }

/// Every event record stays allocated after its delivery: meant.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:quorin::_CFXPCCreateCFObjectFromXPCObject\n";
}
