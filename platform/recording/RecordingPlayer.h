#pragma once

#include "platform/baseband/Loopback.h"
#include "platform/recording/PacedRecording.h"

namespace quorin {

/// Plays a recording into a loopback. Main thread.
class RecordingPlayer {
 public:
  RecordingPlayer(std::string path, Speed speed, Loopback& service)
      : _recording(std::move(path), speed, /*loop=*/false, currentClock().uptime()),
        _service(service) {}

  [[nodiscard]] PacedRecording& recording() { return _recording; }
  /// Delivers what is due at this moment, and not more than the service takes in one go.
  void step();
  /// Everything was delivered and handled.
  [[nodiscard]] bool isOver() const { return !_recording.next() && _service.pending() == 0; }

 private:
  PacedRecording _recording;
  Loopback& _service;
};

}  // namespace quorin
