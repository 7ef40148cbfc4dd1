#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "platform/baseband/Loopback.h"
#include "platform/recording/recording.h"

namespace quorin {

/// Plays a recording into a loopback at its own pace, faster, or as fast as it is taken. Main
/// thread.
class RecordingPlayer {
 public:
  /// `speed`: how many times faster than recorded; empty: as fast as it is taken. Requires: > 0.
  RecordingPlayer(std::string path, std::optional<double> speed, Loopback& service);

  /// Why the file cannot be played, or empty.
  [[nodiscard]] const std::string& error() const { return _error; }
  /// Delivers what is due at this moment, and not more than the service takes in one go.
  void step();
  /// Everything was delivered and handled.
  [[nodiscard]] bool isOver() const { return _over && _service.pending() == 0; }
  /// "file:line: reason" of each line that could not be read; reading takes them out.
  [[nodiscard]] std::vector<std::string> unreadableLines() {
    return std::exchange(_unreadable, {});
  }

 private:
  bool readNext();
  [[nodiscard]] bool isDue() const;

  std::string _path;
  std::ifstream _file;
  std::optional<double> _speed;
  Loopback& _service;
  std::string _error;
  std::optional<RecordedEvent> _next;
  std::optional<Milliseconds> _firstArrival;
  std::optional<Milliseconds> _start;
  std::size_t _line = 0;
  std::vector<std::string> _unreadable;
  bool _over = false;
};

}  // namespace quorin
