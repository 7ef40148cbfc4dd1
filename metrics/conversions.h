#pragma once

#include <map>

#include "platform/platform.h"

namespace quorin {

// Of values alone. A value that is no number stays as it is.

/// Milliseconds since 1970-01-01 00:00 UTC -> "yyyy-MM-dd HH:mm:ss zzz" in the zone that is in
/// force at this moment. Seconds are floored.
[[nodiscard]] std::string timeStampText(double milliseconds);

/// Replaces the "timestamp" entry, where there is one, with its text.
void convertTimeStamp(Dictionary& store);

/// "dl_bw" and "ul_bw" of the LTE serving cell, read as signed 32-bit and halved towards zero.
void halveBandwidths(Dictionary& store);

using BandwidthTable = std::map<std::int32_t, float>;
[[nodiscard]] BandwidthTable bandwidthTable();

/// Converts a number where it stands.
using Conversion = void (*)(Value&, const BandwidthTable&);
/// times 0.5, as a 32-bit float
inline void halfSteps(Value& value, const BandwidthTable& /*bandwidths*/) {
  if (value.isInteger64()) value.become(Value(static_cast<float>(value.integer64()) * 0.5F));
}
/// divided by 100.0, as a 32-bit float
inline void hundredths(Value& value, const BandwidthTable& /*bandwidths*/) {
  if (value.isInteger64()) value.become(Value(static_cast<float>(value.integer64()) / 100.0F));
}
/// divided by 100 as an integer, towards zero
inline void wholeOfHundredths(Value& value, const BandwidthTable& /*bandwidths*/) {
  if (value.isInteger64()) value.become(Value(value.integer64() / 100));
}
/// bandwidth code -> MHz; a code without a bandwidth stays
void megahertz(Value& value, const BandwidthTable& bandwidths);

/// A mobile identity of type IMSI -> its digits; other bytes are given back
/// (3GPP TS 24.008, 10.5.1.4, from octet 3).
[[nodiscard]] Value imsiDigits(const Value& identity);

}  // namespace quorin
