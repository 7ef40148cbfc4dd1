#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quorin::simulator {

/// One elementary file of the simulated subscriber's card (TS 31.102 4.2, TS 102 221 13.2).
struct SimFile {
  std::string_view name;
  std::uint32_t id;
  std::span<const std::uint8_t> content;
};

[[nodiscard]] std::span<const SimFile> simFiles();

/// The IMSI as a mobile identity (TS 24.008 10.5.1.4): 001 01 0123456789.
[[nodiscard]] std::span<const std::uint8_t> imsiIdentity();

}  // namespace quorin::simulator
