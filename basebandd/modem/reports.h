#pragma once

#include <optional>
#include <span>

#include "basebandd/modem/Reading.h"
#include "platform/platform.h"

namespace quorin::modem {

/// What is known of the followed modem, under the keys of its own service.
struct ModemReadings {
  Readings modem;               // Modem
  Readings network;             // Modem.Modem3gpp
  Readings signal;              // Modem.Signal
  Readings area;                // Modem.Location, as the keys of a cell: operator-id, lac, ci, tac
  std::vector<Readings> cells;  // GetCellInfo
  Readings sim;                 // Sim
  std::vector<Readings> bearers;  // Bearer
};

/// The radio technology that the modem is camped on. `none`: it is not known, or there is none.
enum class Technology : std::uint8_t { none, lte, umts, gsm, nrOnly };
[[nodiscard]] Technology technologyOf(const ModemReadings& readings);

/// The keys of a cell from the text "MCC,MNC,LAC,CI,TAC"; what is no such text has none.
[[nodiscard]] Readings areaOf(std::string_view location);

/// What a refresh of the source touches, as bits.
using Groups = std::uint8_t;
inline constexpr Groups kSignalGroup = 1;
inline constexpr Groups kCellGroup = 2;
inline constexpr Groups kNetworkGroup = 4;
inline constexpr Groups kSimGroup = 8;
inline constexpr Groups kBearerGroup = 16;

/// One metric that a modem's readings can give.
struct Report {
  std::int64_t metricID;
  Groups groups;    // whose refresh makes it due when that changed it
  Groups measured;  // whose refresh makes it due at any rate
  /// Its payload, with this time stamp in ms since 1970 if there is one. Null: the readings do not
  /// give it now.
  Ref<Data> (*make)(const ModemReadings& readings, std::optional<std::uint64_t> timestamp);
};

/// All of them; what a modem's service cannot know has no row.
[[nodiscard]] std::span<const Report> reports();

}  // namespace quorin::modem
