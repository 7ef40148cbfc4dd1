#pragma once

#include <cstddef>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/town.h"

namespace quorin::simulator {

/// The car: goes round the route, speeds up, slows down for turns and waits at lights.
class Car {
 public:
  explicit Car(std::uint64_t seed);

  /// Drives on for this many seconds, a fraction of one at a time.
  void drive(double seconds);

  [[nodiscard]] Point at() const { return _at; }
  [[nodiscard]] double metresPerSecond() const { return _speed; }

 private:
  Random _random;
  double _temper;            // share of the limit that this driver keeps to
  std::size_t _towards = 0;  // row of the route
  Point _at{};
  double _speed = 0;
  double _waiting = 0;  // seconds
};

}  // namespace quorin::simulator
