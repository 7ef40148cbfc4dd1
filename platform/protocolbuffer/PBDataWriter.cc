#include "platform/protocolbuffer/PBDataWriter.h"

#include "platform/protocolbuffer/PBCodable.h"

namespace quorin {

namespace {

enum WireType : std::uint8_t { varint = 0, delimited = 2 };

void insertVarint(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint64_t value) {
  std::uint8_t buffer[10];
  std::size_t length = 0;
  for (; value >= 0x80; value >>= 7) buffer[length++] = static_cast<std::uint8_t>(value | 0x80);
  buffer[length++] = static_cast<std::uint8_t>(value);
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), buffer, buffer + length);
}

void writeVarint(PBDataWriter& writer, std::uint64_t value) {
  insertVarint(writer.bytes(), writer.bytes().size(), value);
}

void writeKey(PBDataWriter& writer, std::uint32_t number, WireType type) {
  if (number != kPBNoKey) writeVarint(writer, std::uint64_t{number} << 3 | type);
}

void writeDelimited(PBDataWriter& writer, Bytes bytes, std::uint32_t number) {
  writeKey(writer, number, delimited);
  writeVarint(writer, bytes.size());
  writer.bytes().insert(writer.bytes().end(), bytes.begin(), bytes.end());
}

}  // namespace

void PBDataWriterWriteUint64Field(PBDataWriter& writer, std::uint64_t value, std::uint32_t number) {
  writeKey(writer, number, varint);
  writeVarint(writer, value);
}

void PBDataWriterWriteUint32Field(PBDataWriter& writer, std::uint32_t value, std::uint32_t number) {
  PBDataWriterWriteUint64Field(writer, value, number);
}

void PBDataWriterWriteInt32Field(PBDataWriter& writer, std::int32_t value, std::uint32_t number) {
  PBDataWriterWriteUint64Field(writer, static_cast<std::uint64_t>(std::int64_t{value}), number);
}

void PBDataWriterWriteSint32Field(PBDataWriter& writer, std::int32_t value, std::uint32_t number) {
  const auto zigzag =
      static_cast<std::uint32_t>(value) << 1 ^ static_cast<std::uint32_t>(value >> 31);
  PBDataWriterWriteUint64Field(writer, zigzag, number);
}

void PBDataWriterWriteBOOLField(PBDataWriter& writer, bool value, std::uint32_t number) {
  PBDataWriterWriteUint64Field(writer, value ? 1 : 0, number);
}

void PBDataWriterWriteDataField(PBDataWriter& writer, const Data& value, std::uint32_t number) {
  writeDelimited(writer, value.bytes(), number);
}

void PBDataWriterWriteStringField(PBDataWriter& writer, const String& value, std::uint32_t number) {
  const auto text = value.text();
  writeDelimited(writer, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, number);
}

void PBDataWriterWriteSubmessage(PBDataWriter& writer, const PBCodable& value,
                                 std::uint32_t number) {
  const PBWriterMark mark = PBDataWriterPlaceMark(writer, number);
  value.writeTo(writer);
  PBDataWriterRecallMark(writer, mark);
}

PBWriterMark PBDataWriterPlaceMark(PBDataWriter& writer, std::uint32_t number) {
  writeKey(writer, number, delimited);
  return writer.bytes().size();
}

void PBDataWriterRecallMark(PBDataWriter& writer, PBWriterMark mark) {
  insertVarint(writer.bytes(), mark, writer.bytes().size() - mark);
}

}  // namespace quorin
