#include "platform/foundation/clock.h"

namespace quorin {

namespace {

class SystemClock final : public Clock {
 public:
  Milliseconds uptime() const override { return now<std::chrono::steady_clock>(); }
  Milliseconds sinceEpoch() const override { return now<std::chrono::system_clock>(); }

 private:
  template <class Source>
  static Milliseconds now() {
    return std::chrono::duration_cast<Milliseconds>(Source::now().time_since_epoch());
  }
};

Clock*& clockInForce() {
  static Clock* clock = &systemClock();
  return clock;
}

}  // namespace

Clock& systemClock() {
  static SystemClock clock;
  return clock;
}

Clock& currentClock() { return *clockInForce(); }
void setCurrentClock(Clock& clock) { clockInForce() = &clock; }

}  // namespace quorin
