#pragma once

#include "basebandd/MetricSource.h"
#include "platform/recording/PacedRecording.h"

namespace quorin {

/// A recording as a source.
class ReplaySource final : public MetricSource {
 public:
  /// Requires: the recording has no error.
  explicit ReplaySource(PacedRecording recording) : _recording(std::move(recording)) {}

  [[nodiscard]] std::optional<Milliseconds> next() const override { return _recording.next(); }
  void give(const Sink& sink) override;
  [[nodiscard]] std::string description() const override;

 private:
  PacedRecording _recording;
};

}  // namespace quorin
