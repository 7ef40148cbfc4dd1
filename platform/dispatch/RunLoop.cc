#include "platform/dispatch/RunLoop.h"

#include <algorithm>

#include "platform/dispatch/queue.h"

namespace quorin {

namespace {

/// How long the loop sleeps when nothing is due; a post wakes it.
constexpr Milliseconds kLongestSleep{60'000};

}  // namespace

Timer::Timer(Milliseconds interval, std::function<void()> action)
    : _interval(interval), _next(currentClock().uptime() + interval), _action(std::move(action)) {}

RunLoop& RunLoop::mainRunLoop() {
  static RunLoop loop;
  return loop;
}

void RunLoop::addTimer(std::shared_ptr<Timer> timer) { _timers.push_back(std::move(timer)); }

bool RunLoop::runOnce() {
  bool worked = false;
  const Milliseconds now = currentClock().uptime();
  const auto timers = _timers;  // an action may add timers
  for (const auto& timer : timers) {
    if (!timer->isValid() || timer->_next > now) continue;
    worked = true;
    const Milliseconds late = now - timer->_next;
    timer->_next += timer->_interval * (1 + late / timer->_interval);
    const auto action = timer->_action;  // it may invalidate its timer
    action();
  }
  std::erase_if(_timers, [](const auto& timer) { return !timer->isValid(); });
  return dispatch_get_main_queue().runPending() || worked;
}

std::optional<Milliseconds> RunLoop::nextTimer() const {
  std::optional<Milliseconds> next;
  for (const auto& timer : _timers)
    if (timer->isValid() && (!next || timer->_next < *next)) next = timer->_next;
  return next;
}

void RunLoop::run() {
  _running = true;
  while (_running) {
    if (runOnce()) continue;
    Milliseconds sleep = kLongestSleep;
    if (const auto next = nextTimer())
      sleep = std::clamp(*next - currentClock().uptime(), Milliseconds{0}, kLongestSleep);
    dispatch_get_main_queue().wait(sleep);
  }
}

std::shared_ptr<Timer> scheduleTimer(Milliseconds interval, std::function<void()> action) {
  auto timer = std::make_shared<Timer>(interval, std::move(action));
  RunLoop::mainRunLoop().addTimer(timer);
  return timer;
}

}  // namespace quorin
