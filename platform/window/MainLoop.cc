#include "platform/window/MainLoop.h"

#include <algorithm>

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/queue.h"

namespace quorin {

MainLoop::MainLoop() {
  _timer.setSingleShot(true);
  _timer.setTimerType(Qt::PreciseTimer);
  connect(&_timer, &QTimer::timeout, this, &MainLoop::run);
  dispatch_get_main_queue().setWakeUp(
      [this] { QMetaObject::invokeMethod(this, &MainLoop::run, Qt::QueuedConnection); });
  QMetaObject::invokeMethod(this, &MainLoop::run, Qt::QueuedConnection);
}

MainLoop::~MainLoop() { dispatch_get_main_queue().setWakeUp(nullptr); }

void MainLoop::run() {
  RunLoop& runLoop = RunLoop::mainRunLoop();
  (void)runLoop.runOnce();
  const auto next = runLoop.nextTimer();
  if (!next) return _timer.stop();
  _timer.start(std::max(*next - currentClock().uptime(), Milliseconds{0}));
}

}  // namespace quorin
