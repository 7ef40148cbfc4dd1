#include "platform/foundation/clock.h"

#include <ctime>

namespace quorin {

namespace {

class SystemClock final : public Clock {
 public:
  Milliseconds uptime() const override { return now<std::chrono::steady_clock>(); }
  Milliseconds roughUptime() const override {
    timespec time{};
    (void)clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return std::chrono::seconds(time.tv_sec) + Milliseconds(time.tv_nsec / 1'000'000);
  }
  Milliseconds sinceEpoch() const override { return now<std::chrono::system_clock>(); }

 private:
  template <class Source>
  static Milliseconds now() {
    return std::chrono::duration_cast<Milliseconds>(Source::now().time_since_epoch());
  }
};

constinit SystemClock machineClock;

}  // namespace

constinit Clock* clock_state::inForce = &machineClock;

Milliseconds Clock::roughUptime() const { return uptime(); }

Clock& systemClock() { return machineClock; }

}  // namespace quorin
