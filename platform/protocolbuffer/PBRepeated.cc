#include "platform/protocolbuffer/PBRepeated.h"

namespace quorin {

namespace {

template <class Number>
List listOf(const PBRepeated<Number>& repeated) {
  List list;
  list.reserve(repeated.values.size());
  for (Number value : repeated.values) list.append(Value(value));
  return list;
}

template <class Number>
std::uint64_t hashOf(const PBRepeated<Number>& repeated) {
  return hashBytes({reinterpret_cast<const std::uint8_t*>(repeated.values.data()),
                    repeated.values.size() * sizeof(Number)});
}

}  // namespace

void PBRepeatedUInt32Add(PBRepeatedUInt32& repeated, std::uint32_t value) {
  repeated.values.push_back(value);
}
void PBRepeatedInt32Add(PBRepeatedInt32& repeated, std::int32_t value) {
  repeated.values.push_back(value);
}
List PBRepeatedUInt32NSArray(const PBRepeatedUInt32& repeated) { return listOf(repeated); }
List PBRepeatedInt32NSArray(const PBRepeatedInt32& repeated) { return listOf(repeated); }
std::uint64_t PBRepeatedUInt32Hash(const PBRepeatedUInt32& repeated) { return hashOf(repeated); }
std::uint64_t PBRepeatedInt32Hash(const PBRepeatedInt32& repeated) { return hashOf(repeated); }

}  // namespace quorin
