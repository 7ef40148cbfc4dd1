#pragma once

#include <cstdint>
#include <vector>

#include "basebandd/simulator/Car.h"
#include "basebandd/simulator/Cell.h"
#include "basebandd/simulator/Shadowing.h"

namespace quorin::simulator {

/// What the receiver knows of one cell: layer 3 filtered, in dBm and dB. Filtering is done on
/// levels in dB, which keeps RSRQ = 10 log10(N) + RSRP - RSSI true of the filtered values too.
struct Measurement {
  double level = -150;   // RSRP, CPICH RSCP or RXLEV
  double quality = -30;  // RSRQ, Ec/No or carrier over noise
  double sinr = -30;     // LTE
  double rssi = -120;    // LTE and UMTS: of the cell's whole carrier
};

/// Every cell of the town as the moving receiver hears it.
class RadioMap {
 public:
  /// The layer 1 measurement period of TS 36.133 8.1.2.2.1 without DRX.
  static constexpr std::int64_t kPeriodMs = 200;

  RadioMap(std::uint64_t seed, Point start);

  /// Measures all cells where the car is now; `now` is the time since the drive began.
  void measure(std::int64_t now, const Car& car);

  [[nodiscard]] const Measurement& of(const Cell& cell) const { return _measured[cell.index]; }
  /// Srxlev in dB: level over the cell's qRxLevMin (TS 36.304 5.2.3.2).
  [[nodiscard]] double srxlev(const Cell& cell) const {
    return of(cell).level - cell.carrier->qRxLevMin;
  }
  /// Strong and clean enough to be found and measured as a neighbour.
  [[nodiscard]] bool isDetected(const Cell& cell) const;

 private:
  struct Faded {
    Random random;
    double state = 0;  // deviation 1
  };
  struct Load {
    double mean;
    double swing;
    double periodSeconds;
    double phase;
  };
  [[nodiscard]] double loadOf(std::size_t cell, double seconds) const;
  void measureCarrier(const Carrier& carrier, std::span<const double> levels, double seconds);
  void note(std::size_t cell, const Measurement& latest);

  Shadowing _shadowing;
  std::vector<Faded> _fading;
  std::vector<Load> _loads;
  std::vector<double> _unfaded;  // dBm where the car was last
  std::vector<Measurement> _measured;
  Point _last;
  bool _begun = false;
};

/// Deviation in dB that fading leaves in one measurement: Rayleigh fading's 5.57 dB, averaged over
/// half wavelengths driven and over the carrier's coherence bandwidths.
[[nodiscard]] double fadingDeviation(const Carrier& carrier, double metres);

}  // namespace quorin::simulator
