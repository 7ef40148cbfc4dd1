#include "basebandd/simulator/Shadowing.h"

#include <cmath>
#include <numbers>

#include "basebandd/simulator/arithmetic.h"
#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

namespace {

// Waves shorter than a few metres belong to fading: this share of the spectrum is longer.
constexpr double kLongWaves = 0.98;

}  // namespace

// The spectrum of exp(-r / d) in the plane: the share of waves below wave number k is
// 1 - 1 / sqrt(1 + (k d)^2).
ShadowField::ShadowField(Random& random, double decorrelationMetres) {
  for (Wave& wave : _waves) {
    const double share = kLongWaves * random.uniform();
    const double root = 1 / (1 - share);
    const double number = std::sqrt(root * root - 1) / decorrelationMetres;  // radians a metre
    const double direction = random.uniform();
    const double turns = number / (2 * std::numbers::pi);
    wave = {turns * cosine(direction), turns * cosine(direction - 0.25), random.uniform()};
  }
}

double ShadowField::at(Point place) const {
  double sum = 0;
  for (const Wave& wave : _waves) sum += cosine(wave.x * place.x + wave.y * place.y + wave.phase);
  return sum * std::sqrt(2.0 / static_cast<double>(_waves.size()));
}

Shadowing::Shadowing(std::uint64_t seed) {
  Random random(seed, streams::kShadowing);
  for (std::size_t i = 0; i <= sites().size(); ++i)
    _fields.emplace_back(random, kDecorrelationMetres);
}

std::vector<double> Shadowing::at(Point place) const {
  const double common = _fields.front().at(place);
  std::vector<double> all;
  for (std::size_t i = 1; i < _fields.size(); ++i)
    all.push_back(kDeviation * std::sqrt(0.5) * (common + _fields[i].at(place)));
  return all;
}

}  // namespace quorin::simulator
