#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/foundation/Data.h"

namespace quorin {

class PBCodable;

/// Collects wire bytes.
class PBDataWriter {
 public:
  [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return _bytes; }
  [[nodiscard]] std::vector<std::uint8_t>& bytes() { return _bytes; }

 private:
  std::vector<std::uint8_t> _bytes;
};

/// As a field number: write the bare value, without a key.
inline constexpr std::uint32_t kPBNoKey = 0xffffffff;

void PBDataWriterWriteUint64Field(PBDataWriter& writer, std::uint64_t value, std::uint32_t number);
void PBDataWriterWriteUint32Field(PBDataWriter& writer, std::uint32_t value, std::uint32_t number);
/// A negative value takes ten bytes.
void PBDataWriterWriteInt32Field(PBDataWriter& writer, std::int32_t value, std::uint32_t number);
/// Zigzag.
void PBDataWriterWriteSint32Field(PBDataWriter& writer, std::int32_t value, std::uint32_t number);
void PBDataWriterWriteBOOLField(PBDataWriter& writer, bool value, std::uint32_t number);
void PBDataWriterWriteDataField(PBDataWriter& writer, const Data& value, std::uint32_t number);
void PBDataWriterWriteStringField(PBDataWriter& writer, const String& value, std::uint32_t number);
void PBDataWriterWriteSubmessage(PBDataWriter& writer, const PBCodable& value,
                                 std::uint32_t number);

/// Where a length-delimited field's content begins.
using PBWriterMark = std::size_t;

/// Between the two, what is written becomes the content of the length-delimited field `number`.
[[nodiscard]] PBWriterMark PBDataWriterPlaceMark(PBDataWriter& writer, std::uint32_t number);
void PBDataWriterRecallMark(PBDataWriter& writer, PBWriterMark mark);

}  // namespace quorin
