#pragma once

#include <cstdint>
#include <span>

namespace quorin::simulator {

enum class Technology : std::uint8_t { none, lte, umts, gsm };

/// One frequency layer of the town's network: what it is, and what its cells broadcast about
/// reselection (3GPP TS 36.304, 25.304, 45.008). All levels are RSRP, CPICH RSCP or RXLEV.
struct Carrier {
  Technology technology;
  std::uint32_t channel;         // EARFCN or UARFCN; a GSM cell has its own ARFCN
  std::uint32_t uplinkChannel;   // LTE
  std::uint32_t band;            // as the technology numbers its bands
  std::int32_t sysBand;          // the same in names::SYS_BAND; -1 where no message asks for it
  double megahertz;              // downlink
  std::uint32_t bandwidthMHz;    // LTE
  std::uint32_t bandwidthCode;   // LTE: 0 to 5
  std::uint32_t resourceBlocks;  // LTE: N of TS 36.214 5.1.3

  double referencePower;  // dBm: LTE reference signal per resource element, CPICH, or BCCH carrier
  double antennaGain;     // dBi in the main direction

  std::uint32_t priority;   // 7 is highest
  double qRxLevMin;         // dBm
  double qHyst;             // dB
  double sNonIntraSearch;   // dB over qRxLevMin
  double threshServingLow;  // dB over qRxLevMin: below it a lower priority will do
  double threshXHigh;       // dB over qRxLevMin: above it a higher priority is good enough
  double threshXLow;        // dB over qRxLevMin: above it a lower priority is good enough
};

/// The layers, LTE first.
[[nodiscard]] std::span<const Carrier> carriers();

// t-Reselection of every layer (TS 36.331 6.3.1, SIB3 and SIB5).
inline constexpr std::int64_t kReselectionMs = 2000;
// TS 36.304 5.2.4.5: no reselection before the cell was camped on for longer than this.
inline constexpr std::int64_t kCampedAtLeastMs = 1000;
// dB over qRxLevMin below which neighbours of the same frequency are measured: always.
inline constexpr std::uint32_t kIntraSearch = 62;

}  // namespace quorin::simulator
