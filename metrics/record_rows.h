#pragma once

#include <span>
#include <variant>

#include "metrics/MetricValidator.h"
#include "metrics/conversions.h"
#include "metrics/metric_cases.h"

namespace quorin {

/// The record of a validator that a member belongs to.
inline LTE& recordOf(MetricValidator& validator, const LTE*) { return validator.myLTE(); }
inline UMTS& recordOf(MetricValidator& validator, const UMTS*) { return validator.myUMTS(); }
inline GSM& recordOf(MetricValidator& validator, const GSM*) { return validator.myGSM(); }
inline Common& recordOf(MetricValidator& validator, const Common*) { return validator.myCommon(); }

template <auto member>
struct Membership;
template <class R, class T, T R::*member>
struct Membership<member> {
  static T& in(MetricValidator& validator) {
    return recordOf(validator, static_cast<const R*>(nullptr)).*member;
  }
};

/// The member's place in a validator; each member has one address.
template <auto member>
inline constexpr auto in = &Membership<member>::in;

using ListIn = List& (*)(MetricValidator&);
using DictionaryIn = Dictionary& (*)(MetricValidator&);
using ValueIn = Value& (*)(MetricValidator&);
using MemberIn = std::variant<ListIn, DictionaryIn, ValueIn>;

/// How one key of a list's entries is converted: in one of them, or in all at once.
struct EntryConversion {
  Literal key{};
  Conversion one = nullptr;
  void (*all)(const DictionaryDrafts& entries, std::size_t place,
              const BandwidthTable& bandwidths) = nullptr;
};

template <Conversion conversion>
constexpr EntryConversion converted(const Literal& key) {
  return {key, conversion,
          [](const DictionaryDrafts& entries, std::size_t place, const BandwidthTable& bandwidths) {
            entries.change(place, [&](Value& value) { conversion(value, bandwidths); });
          }};
}

/// One member of a technology record: where it comes from, and what is converted.
struct RecordRow {
  std::string_view record;
  std::string_view member;
  MemberIn in;
  MetricValidator::Store source;
  Literal key{};                     // in the store; empty: the whole store
  EntryConversion conversions[4]{};  // of a list's entries
  Literal addedKey{};                // of the store, added to each entry as its last
  Keys keys{};                       // of such entries, without and with what is added
  Keys keysWithAdded{};
};

/// All 25 members, record by record, each in its record's order.
[[nodiscard]] std::span<const RecordRow> recordRows();

/// The row of the member. Fatal when there is none.
[[nodiscard]] const RecordRow& recordRow(const MemberIn& member);

/// The member's present value.
[[nodiscard]] Value valueOf(MetricValidator& validator, const RecordRow& row);

/// Rebuilds the members whose source is the metric's store.
void refreshRecords(MetricValidator& validator, const MetricCase& metric);

}  // namespace quorin
