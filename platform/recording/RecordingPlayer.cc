#include "platform/recording/RecordingPlayer.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace quorin {

namespace {

/// Events under way between the recording and the pages, so that memory stays small.
constexpr std::size_t kMostPending = 1024;
/// Events of one step, so that the main thread stays responsive.
constexpr std::size_t kMostPerStep = 256;

}  // namespace

RecordingPlayer::RecordingPlayer(std::string path, std::optional<double> speed, Loopback& service)
    : _path(std::move(path)), _file(_path), _speed(speed), _service(service) {
  std::error_code error;
  if (!_file)
    _error = _path + ": " + std::strerror(errno);
  else if (std::filesystem::is_directory(_path, error))
    _error = _path + ": is a directory";
  _over = !_error.empty() || !readNext();
}

bool RecordingPlayer::readNext() {
  for (std::string line; std::getline(_file, line);) {
    ++_line;
    if (isBlank(line)) continue;
    std::string reason;
    _next = readRecordingLine(line, reason);
    if (_next) return true;
    _unreadable.push_back(_path + ":" + std::to_string(_line) + ": " + reason);
  }
  return false;
}

bool RecordingPlayer::isDue() const {
  if (!_speed || !_next->arrival || !_firstArrival) return true;
  const auto recorded = static_cast<double>((*_next->arrival - *_firstArrival).count());
  const auto played = static_cast<double>((currentClock().uptime() - *_start).count());
  return recorded <= played * *_speed;
}

void RecordingPlayer::step() {
  if (!_start) _start = currentClock().uptime();
  for (std::size_t i = 0; !_over && i < kMostPerStep && _service.pending() < kMostPending; ++i) {
    if (!isDue()) return;
    if (!_firstArrival) _firstArrival = _next->arrival;
    _service.deliver(osmin::kEventMetric, _next->event);
    _over = !readNext();
  }
}

}  // namespace quorin
