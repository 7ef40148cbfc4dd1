#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorin {

/// Which index a level exactly between two of them has.
enum class Bounds { upper, untold };

/// A measurement report: index 0 lies below `lowest`, each further index a step higher, and the
/// last one is open above.
struct ReportMapping {
  std::string_view quantity;
  std::string_view unit;
  double lowest;
  double step;
  int last;
  double shownPerIndex = 1;  // 0.5 where the page shows half the index
  Bounds bounds = Bounds::upper;
};

/// A value as a page shows it, and what it means.
struct NamedValue {
  std::string_view value;
  std::string_view meaning;
  std::string_view clause{};  // where it is another than the reading's
};

/// Channel numbers that follow each other, with their frequencies in steps of 100 kHz.
struct ChannelRange {
  std::string_view band;
  int first;
  int last;
  int lowest;    // the first channel's frequency
  int step = 1;  // from one channel to the next
};

/// A code whose parts are told by counting.
struct Formula {
  std::string (*meaning)(std::uint32_t value);
  std::uint32_t first;
  std::uint32_t last;
};

using NamedValues = std::span<const NamedValue>;
using ChannelRanges = std::span<const ChannelRange>;

/// How some values read, and where that stands.
struct Reading {
  std::string_view title;
  std::string_view clause;
  std::variant<ReportMapping, NamedValues, ChannelRanges, Formula> rule;
};

/// What a value that a page shows means, and where that stands.
struct Meaning {
  std::string text;
  std::string_view clause;
};

/// The meaning of a value as a page shows it; empty: the reading does not know it.
[[nodiscard]] std::optional<Meaning> meaningOf(const Reading& reading, std::string_view value);

/// Values that show how the reading goes: named ones all, ranges at their ends.
[[nodiscard]] std::vector<std::string> samplesOf(const Reading& reading);

// Report indices.
extern const Reading kRsrpReport;
extern const Reading kHalvedRsrqReport;
extern const Reading kRscpReport;
extern const Reading kEcNoReport;
extern const Reading kHalvedEcNoReport;
extern const Reading kRxlevReport;
// Channels, cells and carriers.
extern const Reading kEarfcnDownlink;
extern const Reading kEarfcnUplink;
extern const Reading kUarfcnDownlink;
extern const Reading kArfcnDownlink;
extern const Reading kBandwidthCode;
extern const Reading kBandwidth;
extern const Reading kWholeBandwidth;
extern const Reading kPhysicalCellIdentity;
extern const Reading kEutranCellIdentity;
extern const Reading kUtranCellIdentity;
extern const Reading kBaseStationIdentityCode;
extern const Reading kTransmissionMode;
// Causes and states.
extern const Reading kLteRrcCause;
extern const Reading kEpsUpdateStatus;
extern const Reading kModeOfOperation;
extern const Reading kMmUpdateStatus;
extern const Reading kGprsUpdateStatus;
extern const Reading kNasProcedureFailure;
// The card.
extern const Reading kFileIdentifier;

}  // namespace quorin
