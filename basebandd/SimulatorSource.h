#pragma once

#include <cstdint>
#include <deque>

#include "basebandd/MetricSource.h"
#include "basebandd/simulator/Reporter.h"
#include "basebandd/simulator/State.h"

namespace quorin {

/// A modem on a drive through a made-up town. Everything that it reports comes from one model of
/// radio, network and phone; the same seed and times give the same bytes.
class SimulatorSource final : public MetricSource {
 public:
  /// The drive starts at this time of day (since 1970), which is this uptime.
  SimulatorSource(std::uint64_t seed, Milliseconds startOfDrive, Milliseconds startUptime);

  /// The drive never ends.
  [[nodiscard]] std::optional<Milliseconds> next() const override;
  void give(const Sink& sink) override;
  [[nodiscard]] std::string description() const override;

 private:
  struct Event {
    std::int64_t at;  // ms since the drive began
    std::int64_t metricID;
    Ref<Data> payload;
  };
  // The model runs ahead to its next event, so that the service sleeps until then.
  void runAhead();

  std::uint64_t _seed;
  Milliseconds _startOfDrive;
  Milliseconds _startUptime;
  simulator::State _state;
  simulator::Reporter _reporter;
  std::deque<Event> _pending;
};

}  // namespace quorin
