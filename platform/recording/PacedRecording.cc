#include "platform/recording/PacedRecording.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace quorin {

bool readSpeed(const std::string& text, Speed& speed) {
  constexpr double kHighest = 1e6;
  speed.reset();
  if (text == "max") return true;
  char* end = nullptr;
  speed = std::strtod(text.c_str(), &end);
  return end != text.c_str() && *end == '\0' && *speed > 0 && *speed <= kHighest;
}

PacedRecording::PacedRecording(std::string path, Speed speed, bool loop, Milliseconds start)
    : _path(std::move(path)), _file(_path), _speed(speed), _loop(loop), _start(start), _due(start) {
  std::error_code error;
  if (!_file)
    _error = _path + ": " + std::strerror(errno);
  else if (std::filesystem::is_directory(_path, error))
    _error = _path + ": is a directory";
  else
    readNext();
}

void PacedRecording::readNext() {
  _next.reset();
  for (std::string line; !_next;) {
    if (!std::getline(_file, line)) {
      if (startOver()) continue;
      return;
    }
    ++_line;
    if (isBlank(line)) continue;
    std::string reason;
    _next = readRecordingLine(line, reason);
    if (!_next) _unreadable.push_back(_path + ":" + std::to_string(_line) + ": " + reason);
  }
  if (!_next->arrival) return;
  if (!_firstArrival) _firstArrival = _next->arrival;
  if (!_speed) return;
  const auto recorded = static_cast<double>((*_next->arrival - *_firstArrival).count());
  const auto due = _start + Milliseconds(static_cast<std::int64_t>(recorded / *_speed));
  _due = std::max(_due, due);  // an arrival that goes back is due at once
}

/// Only a recording that has events is worth another round.
bool PacedRecording::startOver() {
  if (!_loop || !_firstArrival) return false;
  _file.clear();
  _file.seekg(0);
  _line = 0;
  _start = _due;
  _firstArrival.reset();
  return true;
}

std::optional<Milliseconds> PacedRecording::next() const {
  if (!_next) return std::nullopt;
  return _due;
}

XpcRef PacedRecording::take() {
  XpcRef event = std::move(_next->event);
  readNext();
  return event;
}

}  // namespace quorin
