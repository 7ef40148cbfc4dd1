#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace quorin::modem {

/// A band's downlink channel numbers and the uplink ones that go with the first so many of them.
struct EutraBand {
  std::uint32_t band;
  std::uint32_t first;
  std::uint32_t last;
  std::uint32_t uplinkFirst = 0;
  std::uint32_t uplinkLast = 0;  // 0: there is no uplink
};

/// Downlink channel numbers first, first + step and so on to last. A band may have several ranges.
struct ChannelBand {
  std::uint32_t band;
  std::int32_t sysBand;  // its value in SYS_BAND, or kUnnamed
  std::uint32_t first;
  std::uint32_t last;
  std::uint32_t step = 1;
};
inline constexpr std::int32_t kUnnamed = -1;

/// E-UTRA: 3GPP TS 36.101 table 5.7.3-1, of Release 18. No number is in two bands.
[[nodiscard]] std::span<const EutraBand> eutraBands();
/// UTRA FDD: 3GPP TS 25.101 tables 5.1 (general numbers) and 5.1A (additional ones).
[[nodiscard]] std::span<const ChannelBand> utraBands();
/// GSM: 3GPP TS 45.005 2, with the number of the band's name. P-GSM lies within E-GSM, and that
/// within R-GSM: each number stands at the narrowest.
[[nodiscard]] std::span<const ChannelBand> gsmBands();

/// What a downlink channel number says. Empty: no band has it, several have it, or the band has no
/// such number or name.
[[nodiscard]] std::optional<std::uint32_t> eutraBandOf(std::uint32_t earfcn);
[[nodiscard]] std::optional<std::uint32_t> eutraUplinkOf(std::uint32_t earfcn);
[[nodiscard]] std::optional<std::uint32_t> utraBandOf(std::uint32_t uarfcn);
[[nodiscard]] std::optional<std::int32_t> utraSysBandOf(std::uint32_t uarfcn);
[[nodiscard]] std::optional<std::int32_t> gsmSysBandOf(std::uint32_t arfcn);

}  // namespace quorin::modem
