#include "basebandd/simulator/Random.h"

#include "basebandd/simulator/arithmetic.h"

namespace quorin::simulator {

namespace {

// A bijection that spreads every bit of its argument over the result.
std::uint64_t mixed(std::uint64_t x) {
  x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9;
  x = (x ^ x >> 27) * 0x94D049BB133111EB;
  return x ^ x >> 31;
}

constexpr std::uint64_t kGoldenStep = 0x9E3779B97F4A7C15;

}  // namespace

Random::Random(std::uint64_t seed, std::uint64_t stream)
    : _state(mixed(mixed(seed + kGoldenStep) + stream * kGoldenStep)) {}

std::uint64_t Random::next() { return mixed(_state += kGoldenStep); }

double Random::uniform() { return static_cast<double>(next() >> 11) * 0x1p-53; }

double Random::uniform(double low, double high) { return low + (high - low) * uniform(); }

// The sum of twelve uniform numbers: exact additions only, tails cut at six deviations.
double Random::gaussian() {
  double sum = -6;
  for (int i = 0; i < 12; ++i) sum += uniform();
  return sum;
}

double Random::waiting(double mean) { return -mean * logarithm(1 - uniform()); }

}  // namespace quorin::simulator
