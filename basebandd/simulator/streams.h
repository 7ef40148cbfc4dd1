#pragma once

#include <cstdint>

// The number of each part's stream of random numbers.

namespace quorin::simulator::streams {

inline constexpr std::uint64_t kCar = 1;
inline constexpr std::uint64_t kShadowing = 2;
inline constexpr std::uint64_t kFading = 3;
inline constexpr std::uint64_t kLoad = 4;
inline constexpr std::uint64_t kTraffic = 5;
inline constexpr std::uint64_t kConnection = 6;
inline constexpr std::uint64_t kRegistration = 7;
inline constexpr std::uint64_t kBearers = 8;
inline constexpr std::uint64_t kUplink = 9;
inline constexpr std::uint64_t kAntennas = 10;

}  // namespace quorin::simulator::streams
