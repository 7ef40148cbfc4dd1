#include "basebandd/simulator/RadioMap.h"

#include <cmath>

#include "basebandd/simulator/arithmetic.h"
#include "basebandd/simulator/link.h"
#include "basebandd/simulator/propagation.h"
#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

namespace {

constexpr double kRayleighDeviation = 5.57;  // dB
constexpr double kCoherenceMHz = 1;
constexpr double kFilter = 0.25;  // filter coefficient fc8: 1 / 2^(8/4) (TS 36.331 5.5.3.2)

constexpr double kUmtsNoise = -100;    // dBm in 3.84 MHz
constexpr double kGsmNoise = -113;     // dBm in 200 kHz
constexpr double kUmtsOverCpich = 10;  // a UMTS cell's full power over its CPICH, as a ratio

// A little better than TS 36.133 8.1.2.2.1 asks for; what is weaker cannot be told from noise.
struct Detection {
  double level;
  double quality;
};
constexpr Detection detection(Technology technology) {
  switch (technology) {
    case Technology::lte: return {-126, -8};  // of RSRP and SINR
    case Technology::umts: return {-116, -20};
    default: return {-110, 0};
  }
}

double halfWavelengths(const Carrier& carrier, double metres) {
  return metres / (150 / carrier.megahertz);
}

}  // namespace

double fadingDeviation(const Carrier& carrier, double metres) {
  const double inTime = 1 + halfWavelengths(carrier, metres);
  const double inFrequency = 1 + carrier.bandwidthMHz / kCoherenceMHz;
  return kRayleighDeviation / std::sqrt(inTime * inFrequency);
}

RadioMap::RadioMap(std::uint64_t seed, Point start)
    : _shadowing(seed), _unfaded(cells().size()), _measured(cells().size()), _last(start) {
  Random loads(seed, streams::kLoad);
  for (std::size_t i = 0; i < cells().size(); ++i) {
    _fading.push_back({Random(seed, streams::kFading << 32 | i)});
    const double mean = loads.uniform(0.25, 0.6);
    _loads.push_back({mean, loads.uniform(0.05, 0.2), loads.uniform(60, 400), loads.uniform()});
  }
}

double RadioMap::loadOf(std::size_t cell, double seconds) const {
  const Load& load = _loads[cell];
  return load.mean + load.swing * cosine(seconds / load.periodSeconds + load.phase);
}

void RadioMap::note(std::size_t cell, const Measurement& latest) {
  Measurement& kept = _measured[cell];
  const double weight = _begun ? kFilter : 1;
  kept.level += weight * (latest.level - kept.level);
  kept.quality += weight * (latest.quality - kept.quality);
  kept.sinr += weight * (latest.sinr - kept.sinr);
  kept.rssi += weight * (latest.rssi - kept.rssi);
}

void RadioMap::measureCarrier(const Carrier& carrier, std::span<const double> levels,
                              double seconds) {
  double sum = 0;
  for (const Cell& cell : cells()) {
    if (cell.carrier != &carrier) continue;
    const LteSignal signal{levels[cell.index], loadOf(cell.index, seconds)};
    sum += carrier.technology == Technology::lte
               ? powerPerElement({&signal, 1})
               : power(signal.rsrp) * kUmtsOverCpich * signal.load;
  }
  for (const Cell& cell : cells()) {
    if (cell.carrier != &carrier) continue;
    const double level = levels[cell.index];
    if (carrier.technology == Technology::lte) {
      const double all = rssi(sum, carrier.resourceBlocks);
      note(cell.index, {level, rsrq(level, all, carrier.resourceBlocks),
                        sinr({level, loadOf(cell.index, seconds)}, sum), all});
    } else if (carrier.technology == Technology::umts) {
      const double all = decibels(sum + power(kUmtsNoise));
      note(cell.index, {level, ecNo(level, all), 0, all});
    } else {
      note(cell.index, {level, level - kGsmNoise, 0, level});
    }
  }
}

void RadioMap::measure(std::int64_t now, const Car& car) {
  const Point here = car.at();
  const double driven = distance(here, _last);
  _last = here;
  if (driven > 0 || !_begun) {
    const std::vector<double> shadows = _shadowing.at(here);
    for (const Cell& cell : cells())
      _unfaded[cell.index] = meanLevel(cell, here) + shadows[cell.siteIndex];
  }
  std::vector<double> levels(cells().size());
  for (const Cell& cell : cells()) {
    Faded& faded = _fading[cell.index];
    const double kept = _begun ? exponential(-halfWavelengths(*cell.carrier, driven)) : 0;
    faded.state = kept * faded.state + std::sqrt(1 - kept * kept) * faded.random.gaussian();
    levels[cell.index] =
        _unfaded[cell.index] + fadingDeviation(*cell.carrier, driven) * faded.state;
  }
  const double seconds = static_cast<double>(now) / 1000;
  for (const Carrier& carrier : carriers()) measureCarrier(carrier, levels, seconds);
  _begun = true;
}

bool RadioMap::isDetected(const Cell& cell) const {
  const Detection least = detection(cell.technology());
  const Measurement& measured = of(cell);
  const double quality = cell.technology() == Technology::lte ? measured.sinr : measured.quality;
  return measured.level >= least.level && quality >= least.quality;
}

}  // namespace quorin::simulator
