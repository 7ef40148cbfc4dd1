#include "basebandd/simulator/ServingQuality.h"

#include "basebandd/simulator/State.h"
#include "basebandd/simulator/arithmetic.h"
#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

namespace {

// dB that the second antenna lies below the first: between the two sums.
constexpr double kMeanImbalance = 2.2;
constexpr double kImbalanceSwing = 1.6;
constexpr double kImbalanceSeconds = 37;

}  // namespace

ServingQuality::ServingQuality(std::uint64_t seed)
    : phase(Random(seed, streams::kAntennas).uniform()) {}

void stepServingQuality(State& state) {
  std::deque<ServingQuality::Sample>& samples = state.quality.samples;
  if (technology(state) != Technology::lte) return samples.clear();
  if (state.mobility.since == state.now) samples.clear();
  if (!samples.empty() && state.now % RadioMap::kPeriodMs != 0) return;
  const Measurement& measured = state.radio.of(*state.mobility.cell);
  const Branch main{measured.level, measured.quality, measured.sinr};
  const double seconds = static_cast<double>(state.now) / 1000;
  const double lost =
      kMeanImbalance + kImbalanceSwing * cosine(seconds / kImbalanceSeconds + state.quality.phase);
  samples.push_back({main, weakerBranch(main, lost)});
  if (samples.size() > ServingQuality::kSamples) samples.pop_front();
}

}  // namespace quorin::simulator
