#pragma once

#include <span>
#include <string_view>

#include "basebandd/modem/codings.h"
#include "basebandd/modem/conversions.h"
#include "messages/codec/AnyMessage.h"

namespace quorin::modem {

/// One reading and the number field that it fills.
struct ReadingRow {
  std::string_view reading;
  Conversion convert;
  void (*set)(AnyMessage& message, std::int64_t number);
};

/// One reading and the byte field that it fills.
struct CodingRow {
  std::string_view reading;
  Coding code;
  void (*set)(AnyMessage& message, const Ref<Data>& bytes);
};

/// What readings of one kind fill in one message class.
struct ReadingTable {
  Ref<AnyMessage> (*make)();  // an empty message of its class
  std::span<const ReadingRow> rows;
  std::span<const CodingRow> codings{};

  /// Fills the message's fields that there are readings for. False: there are none. Requires: the
  /// message is of the table's class.
  bool fill(AnyMessage& message, const Readings& readings) const;
  /// A message of the table's class `M` with what there are readings for; null: there are none.
  template <class M>
  [[nodiscard]] Ref<M> filled(const Readings& readings) const {
    auto message = quorin::make<M>();
    return fill(*message, readings) ? message : nullptr;
  }
};

// Of Modem.Signal: levels, and the serving cell's identity that goes with them.
extern const ReadingTable kLteQuality;
extern const ReadingTable kLteQualityCell;
extern const ReadingTable kUmtsReceive;
extern const ReadingTable kGsmIdle;
extern const ReadingTable kGsmIdleCell;

// Of GetCellInfo: the serving cell, and neighbours by what measured them.
extern const ReadingTable kLteServing;
extern const ReadingTable kUmtsServing;
extern const ReadingTable kGsmServing;
extern const ReadingTable kLteFromLte;
extern const ReadingTable kUmtsFromLte;
extern const ReadingTable kGsmFromLte;
extern const ReadingTable kUmtsFromUmts;
extern const ReadingTable kGsmFromUmts;
extern const ReadingTable kLteFromUmts;
extern const ReadingTable kGsmFromGsm;
extern const ReadingTable kUmtsFromGsm;
extern const ReadingTable kLteFromGsm;

// Of Modem.Modem3gpp, and the area that the modem is registered in.
extern const ReadingTable kEmm;
extern const ReadingTable kMm;
extern const ReadingTable kGmm;
extern const ReadingTable kTrackingArea;
extern const ReadingTable kLocationArea;
extern const ReadingTable kRoutingArea;

// Of Sim and Bearer.
extern const ReadingTable kMmCommon;
extern const ReadingTable kBearer;

/// All of them.
[[nodiscard]] std::span<const ReadingTable* const> readingTables();

/// One elementary file of the SIM and the reading that it is coded from.
struct FileRow {
  std::string_view reading;
  std::uint32_t file;
  Coding code;
};
[[nodiscard]] std::span<const FileRow> fileRows();

/// One address field pair of a bearer: the configuration's key, and where it goes.
struct AddressRow {
  std::string_view reading;
  void (*set)(AnyMessage& bearer, const Ref<Data>& bytes);
  void (*setType)(AnyMessage& bearer, std::int64_t type);  // null: it has none of its own
};
[[nodiscard]] std::span<const AddressRow> addressRows();

}  // namespace quorin::modem
