#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/foundation/Dictionary.h"

namespace quorin {

/// Growable storage of a packed repeated field.
template <class Number>
struct PBRepeated {
  std::vector<Number, Recycling<Number>> values;
};
using PBRepeatedUInt32 = PBRepeated<std::uint32_t>;
using PBRepeatedInt32 = PBRepeated<std::int32_t>;

void PBRepeatedUInt32Add(PBRepeatedUInt32& repeated, std::uint32_t value);
void PBRepeatedInt32Add(PBRepeatedInt32& repeated, std::int32_t value);
[[nodiscard]] List PBRepeatedUInt32NSArray(const PBRepeatedUInt32& repeated);
[[nodiscard]] List PBRepeatedInt32NSArray(const PBRepeatedInt32& repeated);

/// The same values in the same order.
template <class Number>
[[nodiscard]] bool PBRepeatedIsEqual(const PBRepeated<Number>& a, const PBRepeated<Number>& b) {
  return a.values == b.values;
}
/// Replaces the target's values.
template <class Number>
void PBRepeatedCopy(PBRepeated<Number>& target, const PBRepeated<Number>& source) {
  target.values = source.values;
}
[[nodiscard]] std::uint64_t PBRepeatedUInt32Hash(const PBRepeatedUInt32& repeated);
[[nodiscard]] std::uint64_t PBRepeatedInt32Hash(const PBRepeatedInt32& repeated);

}  // namespace quorin
