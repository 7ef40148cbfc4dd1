#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quorin::simulator {

/// Metres east and north of the market square.
struct Point {
  double x;
  double y;
};

[[nodiscard]] double distance(Point a, Point b);

/// A mast with three sectors; `carriers` holds the layers on it, one letter each: 7, 3 and 8 (LTE
/// bands 7, 3 and 20), U and G.
struct Site {
  std::string_view name;
  Point at;
  double firstAzimuth;  // degrees clockwise from north
  std::string_view carriers;
  std::uint32_t trackingArea;
  std::uint32_t umtsLocationArea;
  std::uint32_t gsmLocationArea;
};

/// A hill that every path between its two sides has to cross.
struct Ridge {
  double x;           // runs north and south at this x
  double loss;        // dB, once the receiver stands deep in its shadow
  double rampMetres;  // how far behind the ridge that is
};

/// A point of the drive's round.
struct Waypoint {
  Point at;
  double metresPerSecond;  // limit on the way to it
  double waitingSeconds;   // mean stop there; 0: the car only slows down for the turn
};

/// Where a tracking area's network sends a modem that registers there.
struct TrackingArea {
  std::uint32_t tac;
  std::uint32_t listed[2];  // the TAI list handed out; 0: no entry
  bool allowed;             // for this subscriber
};

[[nodiscard]] std::span<const Site> sites();
[[nodiscard]] std::span<const Ridge> ridges();
[[nodiscard]] std::span<const Waypoint> route();
/// Every TAC of `sites` has its row.
[[nodiscard]] const TrackingArea& trackingArea(std::uint32_t tac);

// The test network of TS 23.003 and its code of TS 24.008 10.5.1.3.
inline constexpr std::uint32_t kMcc = 1;
inline constexpr std::uint32_t kMnc = 1;
inline constexpr std::uint32_t kMncDigits = 2;
inline constexpr std::uint8_t kPlmn[] = {0x00, 0xF1, 0x10};
inline constexpr std::uint8_t kEquivalentPlmn[] = {0x00, 0xF1, 0x20};

}  // namespace quorin::simulator
