#pragma once

#include <fstream>

#include "basebandd/MetricSource.h"
#include "platform/recording/recording.h"

namespace quorin {

/// A recording as a source: at its own pace, faster, or as fast as it is read.
class ReplaySource final : public MetricSource {
 public:
  /// `speed`: how many times faster than recorded; empty: as fast as it is read. `loop`: starts
  /// over at the end. `start`: uptime of the first event. Requires: speed > 0.
  ReplaySource(std::string path, std::optional<double> speed, bool loop, Milliseconds start);

  /// Why the file cannot be played, or empty.
  [[nodiscard]] const std::string& error() const { return _error; }

  void advanceTo(Milliseconds now, const Sink& sink) override;
  [[nodiscard]] std::optional<Milliseconds> next() const override;
  [[nodiscard]] std::string description() const override;

 private:
  void readNext();
  /// Uptime at which the event is due.
  [[nodiscard]] Milliseconds due(const RecordedEvent& event) const;

  std::string _path;
  std::ifstream _file;
  std::optional<double> _speed;
  bool _loop;
  Milliseconds _start;
  std::string _error;
  std::optional<RecordedEvent> _next;
  std::optional<Milliseconds> _firstArrival;
  Milliseconds _nextDue{0};
  std::size_t _line = 0;
  std::size_t _played = 0;
};

}  // namespace quorin
