// Loaded into a program before its libraries: lets a test set the program's wall clock, and
// interrupt it while it takes its name on the bus.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace {

// Seconds, in a file that the test writes; null without one.
std::atomic<long>* offset = nullptr;

__attribute__((constructor)) void start() {
  const char* path = std::getenv("QUORIN_CLOCK_OFFSET");
  const int fd = path ? open(path, O_RDONLY | O_CLOEXEC) : -1;
  if (fd < 0) return;
  void* mapped = mmap(nullptr, sizeof *offset, PROT_READ, MAP_SHARED, fd, 0);
  if (mapped != MAP_FAILED) offset = static_cast<std::atomic<long>*>(mapped);
  close(fd);
}

}  // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
  if (result == 0 && clock == CLOCK_REALTIME && offset) time->tv_sec += offset->load();
  return result;
}

// The first time the name is taken, but a signal came before the answer.
extern "C" int sd_bus_request_name(void* bus, const char* name, std::uint64_t flags) {
  using RequestName = int (*)(void*, const char*, std::uint64_t);
  static const auto next = reinterpret_cast<RequestName>(dlsym(RTLD_NEXT, "sd_bus_request_name"));
  static bool interrupts = std::getenv("QUORIN_INTERRUPTED") != nullptr;
  const int result = next(bus, name, flags);
  return std::exchange(interrupts, false) ? -EINTR : result;
}
