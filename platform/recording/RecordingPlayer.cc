#include "platform/recording/RecordingPlayer.h"

namespace quorin {

namespace {

/// Events under way between the recording and the pages, so that memory stays small.
constexpr std::size_t kMostPending = 1024;
/// Events of one step, so that the main thread stays responsive.
constexpr std::size_t kMostPerStep = 256;

}  // namespace

void RecordingPlayer::step() {
  const Milliseconds now = currentClock().uptime();
  for (std::size_t i = 0; i < kMostPerStep && _service.pending() < kMostPending; ++i) {
    const auto due = _recording.next();
    if (!due || *due > now) return;
    _service.deliver(osmin::kEventMetric, _recording.take());
  }
}

}  // namespace quorin
