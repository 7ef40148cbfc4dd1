// Every allocation of a start-up and of the first event of each metric, failed in turn: the program
// may end there, but neither hangs nor shows anything else than it does undisturbed.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <numeric>
#include <random>
#include <thread>

#include "app/interface.h"
#include "platform/baseband/Loopback.h"
#include "platform/text/TextScreen.h"
#include "tests/faults/failing_new.h"
#include "tests/support/rig.h"
#include "tests/support/sample_metrics.h"

namespace quorin::test {
namespace {

/// How a run of the application ended, in a process of its own.
enum Ending : int { whole = 0, outOfMemory = 3, otherException = 4 };

constexpr unsigned kLongestSeconds = 60;
constexpr std::size_t kTried = 300;
constexpr std::uint32_t kSeed = 1;
/// Tries every allocation instead of so many.
constexpr char kEveryOne[] = "QUORIN_EVERY_ALLOCATION";

struct Outcome {
  int status = 0;  // as of waitpid
  std::uint64_t allocations = 0;
  std::string shown;

  [[nodiscard]] bool ended(Ending how) const {
    return WIFEXITED(status) && WEXITSTATUS(status) == how;
  }
};

/// What is tried: from where on allocations count.
struct Part {
  const char* name;
  bool startUp;
  bool events;

  friend void PrintTo(const Part& part, std::ostream* out) { *out << part.name; }
};

void write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written <= 0) std::_Exit(otherException);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void writeLine(std::string_view line) {
  write(line);
  write("\n");
}

[[noreturn]] void endForException() {
  try {
    if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
  } catch (const std::bad_alloc&) {
    std::_Exit(outOfMemory);
  } catch (...) {
  }
  std::_Exit(otherException);
}

/// The application as text on the loopback service: all pages, one event of each metric, all pages.
void runApplication(const Part& part, std::uint64_t failing,
                    const std::vector<XpcRef>& events) noexcept {
  const VirtualClock clock;
  (void)setPrintSink(writeLine);
  (void)setSystemLogSink(writeLine);
  if (part.startUp) countAllocations(failing);
  Loopback service;
  service.install();
  UIApplication application(interfaceDescription());
  application.launch("AppDelegate");
  TextScreen screen{TextStyle{}};
  (void)screen.openPages(application, {});
  screen.printAll();
  if (!part.events) return;
  countAllocations(failing);
  for (const XpcRef& event : events) {
    service.deliver(osmin::kEventMetric, event);
    while (service.pending() > 0) std::this_thread::yield();
    runMainQueue();
  }
  screen.printAll();
}

Outcome run(const Part& part, std::uint64_t failing, const std::vector<XpcRef>& events) {
  const int shown = memfd_create("shown", MFD_CLOEXEC);
  auto* allocations = static_cast<std::uint64_t*>(mmap(
      nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  if (shown < 0 || allocations == MAP_FAILED) throw std::runtime_error("no memory to share");
  const pid_t child = fork();
  if (child == 0) {
    alarm(kLongestSeconds);
    dup2(shown, STDOUT_FILENO);
    std::set_terminate(endForException);
    runApplication(part, failing, events);
    *allocations = countedAllocations();
    std::fflush(stdout);
    std::_Exit(whole);
  }
  Outcome result;
  waitpid(child, &result.status, 0);
  result.allocations = *allocations;
  result.shown.resize(static_cast<std::size_t>(lseek(shown, 0, SEEK_END)));
  if (pread(shown, result.shown.data(), result.shown.size(), 0) !=
      static_cast<ssize_t>(result.shown.size()))
    throw std::runtime_error("what was shown cannot be read");
  close(shown);
  munmap(allocations, sizeof(std::uint64_t));
  return result;
}

/// Some of them, ascending; all when that is asked for.
std::vector<std::uint64_t> tried(std::uint64_t allocations) {
  std::vector<std::uint64_t> all(allocations);
  std::iota(all.begin(), all.end(), 1);
  if (std::getenv(kEveryOne)) return all;
  std::vector<std::uint64_t> some;
  std::ranges::sample(all, std::back_inserter(some), kTried, std::mt19937(kSeed));
  return some;
}

class Allocations : public ::testing::TestWithParam<Part> {};

TEST_P(Allocations, ThatFailEndTheProgramOrChangeNothing) {
  std::vector<XpcRef> events;
  for (const SampleMetric& sample : sampleMetrics())
    events.push_back(metricEvent(sample.id, sample.payload));
  const Outcome undisturbed = run(GetParam(), 0, events);
  ASSERT_TRUE(undisturbed.ended(whole)) << undisturbed.status;
  ASSERT_GT(undisturbed.allocations, 100U);
  ASSERT_EQ(run(GetParam(), 0, events).shown, undisturbed.shown) << "it shows the same each time";
  std::size_t ended = 0;
  const auto numbers = tried(undisturbed.allocations);
  for (const std::uint64_t number : numbers) {
    const Outcome disturbed = run(GetParam(), number, events);
    if (disturbed.ended(outOfMemory)) ++ended;
    if (disturbed.ended(outOfMemory))
      EXPECT_TRUE(undisturbed.shown.starts_with(disturbed.shown))
          << "allocation " << number << ": something else is shown before the end";
    else if (disturbed.ended(whole))
      EXPECT_TRUE(disturbed.shown == undisturbed.shown)
          << "allocation " << number << ": the program goes on and shows something else";
    else
      ADD_FAILURE() << "allocation " << number << ": status " << disturbed.status;
  }
  std::cout << numbers.size() << " of " << undisturbed.allocations << " allocations tried, "
            << ended << " ended the program\n";
  EXPECT_GT(ended, numbers.size() / 2) << "failures are seen";
}

INSTANTIATE_TEST_SUITE_P(Of, Allocations,
                         ::testing::Values(Part{"StartUp", true, false},
                                           Part{"FirstEvents", false, true}),
                         [](const auto& part) { return part.param.name; });

}  // namespace
}  // namespace quorin::test
