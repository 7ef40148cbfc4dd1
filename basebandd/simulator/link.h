#pragma once

#include <cstdint>
#include <span>

namespace quorin::simulator {

/// What one LTE cell brings to a receiver on its carrier.
struct LteSignal {
  double rsrp;  // dBm a resource element
  double load;  // share of its resource elements that carry data, 0 to 1
};

/// Thermal noise and the receiver's noise figure in one LTE resource element of 15 kHz, in dBm.
inline constexpr double kNoisePerElement = -125.2;

/// Power in mW that cells put into one resource element of a symbol with reference signals,
/// averaged over the twelve of a resource block: two carry reference signals whatever the load is.
[[nodiscard]] double powerPerElement(std::span<const LteSignal> cells);

/// RSSI in dBm over `resourceBlocks` (TS 36.214 5.1.3): every cell on the carrier, and noise.
/// `perElement` is what `powerPerElement` gives for them.
[[nodiscard]] double rssi(double perElement, std::uint32_t resourceBlocks);

/// RSRQ in dB: 10 log10(N) + RSRP - RSSI (TS 36.214 5.1.3).
[[nodiscard]] double rsrq(double rsrp, double rssi, std::uint32_t resourceBlocks);

/// SINR in dB of one of those cells: its reference signal over the other cells' power and noise.
[[nodiscard]] double sinr(const LteSignal& cell, double perElement);

/// The same receiver through an antenna that loses `lost` dB of every signal, but of no noise.
struct Branch {
  double rsrp;
  double rsrq;
  double sinr;
};
[[nodiscard]] Branch weakerBranch(const Branch& main, double lost);

/// CPICH Ec/No in dB from RSCP and RSSI in dBm.
[[nodiscard]] double ecNo(double rscp, double rssi);

}  // namespace quorin::simulator
