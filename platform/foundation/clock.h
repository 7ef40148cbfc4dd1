#pragma once

#include <chrono>

namespace quorin {

/// Milliseconds since 1970-01-01 00:00 UTC.
using Milliseconds = std::chrono::milliseconds;

/// Where the program's time comes from, so that tests own it.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Never goes back; its start means nothing.
  [[nodiscard]] virtual Milliseconds uptime() const = 0;
  /// The same for less, and up to some ten milliseconds late.
  [[nodiscard]] virtual Milliseconds roughUptime() const;
  /// The time of day.
  [[nodiscard]] virtual Milliseconds sinceEpoch() const = 0;
};

/// The machine's own clocks.
[[nodiscard]] Clock& systemClock();

namespace clock_state {
extern Clock* inForce;
}

/// The clock in force: the machine's, until a test puts in its own. Main thread.
[[nodiscard]] inline Clock& currentClock() { return *clock_state::inForce; }
inline void setCurrentClock(Clock& clock) { clock_state::inForce = &clock; }

}  // namespace quorin
