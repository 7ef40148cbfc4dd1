#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "platform/recording/recording.h"

namespace quorin {

/// How many times faster than recorded; empty: as fast as it is taken.
using Speed = std::optional<double>;

/// Reads a number from above 0 to a million, or "max". False when the text is no speed.
[[nodiscard]] bool readSpeed(const std::string& text, Speed& speed);

/// A recording's events, one after the other, each with the time at which it is due: at the
/// recording's own pace or faster, once or over and over. One thread.
class PacedRecording {
 public:
  /// `start`: uptime at which the first event is due. Requires: speed > 0.
  PacedRecording(std::string path, Speed speed, bool loop, Milliseconds start);

  [[nodiscard]] const std::string& path() const { return _path; }
  /// Why the file cannot be played, or empty.
  [[nodiscard]] const std::string& error() const { return _error; }
  /// Uptime at which the next event is due; empty: the recording is over.
  [[nodiscard]] std::optional<Milliseconds> next() const;
  /// The next event. Requires: there is one.
  [[nodiscard]] XpcRef take();
  /// "file:line: reason" of each line that could not be read; reading takes them out.
  [[nodiscard]] std::vector<std::string> unreadableLines() {
    return std::exchange(_unreadable, {});
  }

 private:
  void readNext();
  [[nodiscard]] bool startOver();

  std::string _path;
  std::ifstream _file;
  Speed _speed;
  bool _loop;
  Milliseconds _start;
  std::string _error;
  std::optional<RecordedEvent> _next;
  Milliseconds _due;
  std::optional<Milliseconds> _firstArrival;
  std::size_t _line = 0;
  std::vector<std::string> _unreadable;
};

}  // namespace quorin
