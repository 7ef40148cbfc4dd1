#include "basebandd/SimulatorSource.h"

namespace quorin {

namespace {

// A technology as people say it, with its channel.
std::string shown(const simulator::Cell* cell) {
  if (!cell) return "searching";
  constexpr std::string_view kNames[] = {"", "LTE EARFCN ", "UMTS UARFCN ", "GSM ARFCN "};
  return std::string(kNames[static_cast<std::size_t>(cell->technology())]) +
         std::to_string(cell->channel) + ", site " + std::string(cell->site->name);
}

}  // namespace

SimulatorSource::SimulatorSource(std::uint64_t seed, Milliseconds startOfDrive,
                                 Milliseconds startUptime)
    : _seed(seed), _startOfDrive(startOfDrive), _startUptime(startUptime), _state(seed) {
  runAhead();
}

void SimulatorSource::runAhead() {
  while (_pending.empty()) {
    _reporter.report(_state, _startOfDrive.count(), [&](std::int64_t metricID, Ref<Data> payload) {
      _pending.push_back({_state.now, metricID, std::move(payload)});
    });
    _state.step();
  }
}

void SimulatorSource::give(const Sink& sink) {
  const Event event = std::move(_pending.front());
  _pending.pop_front();
  if (_pending.empty()) runAhead();
  sink(event.metricID, event.payload);
}

std::optional<Milliseconds> SimulatorSource::next() const {
  return _startUptime + Milliseconds(_pending.front().at);
}

std::string SimulatorSource::description() const {
  return "simulated drive, seed " + std::to_string(_seed) + ", " +
         std::to_string(_state.now / 1000) + " s under way, " + shown(_state.mobility.cell);
}

}  // namespace quorin
