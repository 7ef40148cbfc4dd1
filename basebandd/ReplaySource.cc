#include "basebandd/ReplaySource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace quorin {

namespace {

/// Events of one step, so that the service goes on answering.
constexpr std::size_t kMostPerStep = 256;

}  // namespace

ReplaySource::ReplaySource(std::string path, std::optional<double> speed, bool loop,
                           Milliseconds start)
    : _path(std::move(path)),
      _file(_path),
      _speed(speed),
      _loop(loop),
      _start(start),
      _nextDue(start) {
  std::error_code error;
  if (!_file)
    _error = _path + ": " + std::strerror(errno);
  else if (std::filesystem::is_directory(_path, error))
    _error = _path + ": is a directory";
  else
    readNext();
}

void ReplaySource::readNext() {
  _next.reset();
  for (std::string line; !_next;) {
    if (!std::getline(_file, line)) {
      if (!_loop || _played == 0) return;
      _file.clear();
      _file.seekg(0);
      _line = 0;
      _played = 0;
      _firstArrival.reset();
      _start = _nextDue;
      continue;
    }
    ++_line;
    if (isBlank(line)) continue;
    std::string reason;
    _next = readRecordingLine(line, reason);
    if (!_next) systemLog("basebandd: " + _path + ":" + std::to_string(_line) + ": " + reason);
  }
  if (!_firstArrival) _firstArrival = _next->arrival;
  _nextDue = std::max(_nextDue, due(*_next));
  ++_played;
}

Milliseconds ReplaySource::due(const RecordedEvent& event) const {
  if (!_speed || !event.arrival) return _nextDue;
  const auto recorded = static_cast<double>((*event.arrival - *_firstArrival).count());
  return _start + Milliseconds(static_cast<std::int64_t>(recorded / *_speed));
}

void ReplaySource::advanceTo(Milliseconds now, const Sink& sink) {
  for (std::size_t i = 0; i < kMostPerStep && _next && _nextDue <= now; ++i) {
    const xpc_object_t event = _next->event.get();
    const xpc_object_t id = xpc_dictionary_get_value(event, osmin::kKeyMetricID);
    const xpc_object_t payload = xpc_dictionary_get_value(event, osmin::kKeyPayload);
    if (id && xpc_get_type(id) == xpc_type_t::int64) {
      const bool bytes = payload && xpc_get_type(payload) == xpc_type_t::data;
      sink(xpc_int64_get_value(id), make<Data>(bytes ? xpc_data_get_bytes(payload) : Bytes{}));
    }
    readNext();
  }
}

std::optional<Milliseconds> ReplaySource::next() const {
  if (!_next) return std::nullopt;
  return _nextDue;
}

std::string ReplaySource::description() const {
  return "replay of " + _path + (_next ? ", line " + std::to_string(_line) : ", at its end");
}

}  // namespace quorin
