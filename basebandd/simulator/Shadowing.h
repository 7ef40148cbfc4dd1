#pragma once

#include <array>
#include <vector>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/town.h"

namespace quorin::simulator {

/// A random field over the town: mean 0, deviation 1, correlation falling as exp(-distance / d)
/// (Gudmundson 1991). A sum of plane waves drawn from that correlation's spectrum, so the same
/// place has the same value whenever the car comes by.
class ShadowField {
 public:
  ShadowField(Random& random, double decorrelationMetres);

  [[nodiscard]] double at(Point place) const;

 private:
  struct Wave {
    double x;  // turns a metre
    double y;
    double phase;
  };
  std::array<Wave, 96> _waves;
};

/// What buildings take from or, by reflection, add to each site's signal, in dB. All sectors and
/// carriers of a site share it; two sites have half of it in common, as in TR 36.942 4.5.2.
class Shadowing {
 public:
  static constexpr double kDeviation = 8;  // dB
  static constexpr double kDecorrelationMetres = 50;

  explicit Shadowing(std::uint64_t seed);

  /// dB by site, in the order of `sites()`.
  [[nodiscard]] std::vector<double> at(Point place) const;

 private:
  std::vector<ShadowField> _fields;  // the common one first
};

}  // namespace quorin::simulator
