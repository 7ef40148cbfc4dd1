#pragma once

#include <map>

#include "platform/platform.h"

namespace quorin {

// Pure functions over values. A value that is no number is given back as it came.

/// Milliseconds since 1970-01-01 00:00 UTC -> "yyyy-MM-dd HH:mm:ss zzz" in the zone that is in
/// force at this moment. Seconds are floored.
[[nodiscard]] std::string timeStampText(double milliseconds);

/// Replaces the "timestamp" entry, where there is one, with its text.
void convertTimeStamp(Dictionary& store);

/// "dl_bw" and "ul_bw" of the LTE serving cell, read as signed 32-bit and halved towards zero.
void halveBandwidths(Dictionary& store);

using BandwidthTable = std::map<std::int32_t, float>;
[[nodiscard]] BandwidthTable bandwidthTable();

using Conversion = Value (*)(const Value&, const BandwidthTable&);
/// times 0.5, as a 32-bit float
[[nodiscard]] Value halfSteps(const Value& value, const BandwidthTable& bandwidths);
/// divided by 100.0, as a 32-bit float
[[nodiscard]] Value hundredths(const Value& value, const BandwidthTable& bandwidths);
/// divided by 100 as an integer, towards zero
[[nodiscard]] Value wholeOfHundredths(const Value& value, const BandwidthTable& bandwidths);
/// bandwidth code -> MHz; a code without a bandwidth is given back
[[nodiscard]] Value megahertz(const Value& value, const BandwidthTable& bandwidths);

/// A mobile identity of type IMSI -> its digits; other bytes are given back
/// (3GPP TS 24.008, 10.5.1.4, from octet 3).
[[nodiscard]] Value imsiDigits(const Value& identity);

}  // namespace quorin
