#pragma once

#include <cstdint>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

struct State;

/// Power class 3 (TS 36.101 6.2.2), in dBm.
inline constexpr double kLtePcmax = 23;
inline constexpr double kUmtsPmax = 24;

/// Broadcast uplink power control (TS 36.331, SIB2): P0 in dBm, alpha.
inline constexpr double kP0Pusch = -87;
inline constexpr double kAlpha = 0.8;
inline constexpr double kP0Pucch = -115;

/// PUSCH power in dBm (TS 36.213 5.1.1.1): min(Pcmax, 10 log10(M) + P0 + alpha PL + f), with M
/// resource blocks, PL the path loss and f the sum of the network's corrections, both in dB.
[[nodiscard]] double puschPower(std::uint32_t blocks, double pathLoss, double corrections);

/// PUCCH power in dBm (TS 36.213 5.1.2.1): min(Pcmax, P0 + PL + g).
[[nodiscard]] double pucchPower(double pathLoss, double corrections);

/// UMTS DPCCH power in dBm (TS 25.331 8.5.3 and inner loop): what the network needs over its noise.
[[nodiscard]] double dpcchPower(double pathLoss, double corrections);

/// GSM power in dBm: the highest the network allows, less what the path does not need, in the 2 dB
/// steps of TS 45.005 4.1.1.
[[nodiscard]] std::int32_t gsmPower(double rxlev);

/// The closed loops' state, the same for every technology's channel in use.
struct Uplink {
  explicit Uplink(std::uint64_t seed) : random(seed, streams::kUplink) {}

  Random random;
  double puschCorrections = 0;  // dB, -4 to 4
  double pucchCorrections = 0;  // dB, -3 to 3
};

void stepUplink(State& state);

}  // namespace quorin::simulator
