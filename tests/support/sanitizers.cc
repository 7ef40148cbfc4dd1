// What the sanitizers are told; without them nobody asks.

/// The packaged protobuf library is not instrumented: containers that it grew look overgrown.
extern "C" const char* __asan_default_options() { return "detect_container_overflow=0"; }
