#pragma once

#include <cstdint>
#include <deque>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/link.h"

namespace quorin::simulator {

struct State;

/// The LTE serving cell on both receive antennas, over the samples since it was taken.
struct ServingQuality {
  static constexpr std::size_t kSamples = 5;  // one second

  struct Sample {
    Branch main;
    Branch other;  // never better: TS 36.214 5.1.1 reports the better branch
  };

  explicit ServingQuality(std::uint64_t seed);

  double phase;                // of the second antenna's slow changes, in turns
  std::deque<Sample> samples;  // oldest first, at most kSamples
};

void stepServingQuality(State& state);

}  // namespace quorin::simulator
