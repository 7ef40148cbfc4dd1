#include "basebandd/simulator/uplink.h"

#include <algorithm>

#include "basebandd/levels.h"
#include "basebandd/simulator/State.h"
#include "basebandd/simulator/arithmetic.h"

namespace quorin::simulator {

namespace {

constexpr std::int64_t kCommandMs = 200;
constexpr double kUmtsNeeded = -119;     // dBm at the base station: noise, interference, target
constexpr double kUmtsPmin = -50;        // dBm (TS 25.101 6.4.3)
constexpr double kGsmPmax = 33;          // dBm, power class 4
constexpr double kGsmPmin = 5;           // dBm
constexpr double kGsmComfortable = -75;  // dBm downlink: above it the phone may speak more softly
constexpr double kGsmStep = 2;           // dB

// A transmit power control command: mostly nothing, else up or down (TS 36.213 table 5.1.1.1-2).
double corrected(Random& random, double sum, double limit) {
  const double draw = random.uniform();
  const double command = draw < 0.15 ? -1 : draw < 0.3 ? 1 : 0;
  return std::clamp(sum + command, -limit, limit);
}

}  // namespace

double puschPower(std::uint32_t blocks, double pathLoss, double corrections) {
  return std::min(kLtePcmax, decibels(blocks) + kP0Pusch + kAlpha * pathLoss + corrections);
}

double pucchPower(double pathLoss, double corrections) {
  return std::min(kLtePcmax, kP0Pucch + pathLoss + corrections);
}

double dpcchPower(double pathLoss, double corrections) {
  return std::clamp(kUmtsNeeded + pathLoss + corrections, kUmtsPmin, kUmtsPmax);
}

std::int32_t gsmPower(double rxlev) {
  const double spare = std::max(0.0, rxlev - kGsmComfortable);
  const double wanted = std::max(kGsmPmin, kGsmPmax - spare);
  const double steps = static_cast<double>(rounded((kGsmPmax - wanted) / kGsmStep));
  return rounded(kGsmPmax - kGsmStep * steps);
}

void stepUplink(State& state) {
  if (state.now % kCommandMs != 0) return;
  Uplink& uplink = state.uplink;
  uplink.puschCorrections = corrected(uplink.random, uplink.puschCorrections, 4);
  uplink.pucchCorrections = corrected(uplink.random, uplink.pucchCorrections, 3);
}

}  // namespace quorin::simulator
