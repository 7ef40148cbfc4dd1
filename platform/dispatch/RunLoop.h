#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/foundation/clock.h"

namespace quorin {

/// A repeating timer. It holds what its action holds until it is invalidated.
class Timer {
 public:
  Timer(Milliseconds interval, std::function<void()> action);

  void invalidate() { _action = nullptr; }
  [[nodiscard]] bool isValid() const { return static_cast<bool>(_action); }
  [[nodiscard]] Milliseconds interval() const { return _interval; }
  [[nodiscard]] Milliseconds next() const { return _next; }

 private:
  friend class RunLoop;
  Milliseconds _interval;
  Milliseconds _next;
  std::function<void()> _action;
};

/// The main thread's loop: the main queue's work and the timers in its default mode, on the clock
/// in force. Main thread.
class RunLoop {
 public:
  [[nodiscard]] static RunLoop& mainRunLoop();

  void addTimer(std::shared_ptr<Timer> timer);

  /// Runs the timers that are due and the main queue's pending work, once. A timer that is several
  /// intervals late fires once. False when there was nothing to do.
  bool runOnce();

  /// Uptime of the next timer, or empty.
  [[nodiscard]] std::optional<Milliseconds> nextTimer() const;

  /// Runs until `stop`.
  void run();
  void stop() { _running = false; }

 private:
  std::vector<std::shared_ptr<Timer>> _timers;
  bool _running = false;
};

/// Makes a timer that first fires one interval from now, and adds it to the main run loop.
std::shared_ptr<Timer> scheduleTimer(Milliseconds interval, std::function<void()> action);

}  // namespace quorin
