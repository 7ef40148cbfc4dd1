#include "messages/codec/AnyMessage.h"
#include "metrics/registry/KBBMetricUtility.h"

namespace quorin {

namespace {

constexpr std::uint8_t kDelimited = 2;
constexpr std::uint8_t kEndGroup = 4;

/// Zigzag with an arithmetic shift: meant, so that an encoded bit 31 is read as a sign.
std::int32_t signedFromVarint(std::uint64_t varint) {
  const auto n = static_cast<std::int32_t>(static_cast<std::uint32_t>(varint));
  return -(n & 1) ^ (n >> 1);
}

/// Reads one message or the run of a packed field from between its marks.
template <class ReadContent>
bool readBetweenMarks(PBDataReader& reader, ReadContent readContent) {
  PBReaderMark mark = 0;
  if (!PBReaderPlaceMark(reader, mark)) return false;
  if (!readContent()) return false;
  PBReaderRecallMark(reader, mark);
  return true;
}

template <class Append>
bool readPacked(PBDataReader& reader, std::uint8_t wireType, Append append) {
  if (wireType != kDelimited) {
    append(readVarint(reader));
    return true;
  }
  return readBetweenMarks(reader, [&] {
    while (reader._pos < reader._length && !reader._error) append(readVarint(reader));
    return true;
  });
}

bool readElement(AnyMessage& element, PBDataReader& reader) {
  return readBetweenMarks(reader, [&] { return element.readFrom(reader); });
}

}  // namespace

bool AnyMessage::readFrom(PBDataReader& reader) {
  const MessageTable& rows = table();
  while (reader._pos < reader._length) {
    if (reader._error) break;
    const std::uint64_t key = readVarint(reader);
    const auto wireType = static_cast<std::uint8_t>(key & 7);
    const bool cut = rows.keyRule == KeyRule::cut;
    const std::uint64_t number = cut ? key >> 3 & 0xffff : key >> 3;
    if (reader._error || wireType == kEndGroup) break;
    if (cut &&
        KBBMetricUtility::isValidMetricIdTag(static_cast<std::uint16_t>(number), rows.name)) {
      const auto value = static_cast<std::uint32_t>(readVarint(reader));
      char line[48];
      std::snprintf(line, sizeof line, "Unknown tag: %x:%u", static_cast<unsigned>(number), value);
      systemLog(line);
      continue;
    }
    const Field* field = rows.find(number);
    if (!(field ? readField(*field, wireType, reader)
                : PBReaderSkipValueWithTag(reader, number, wireType)))
      return false;
  }
  return !reader._error;
}

// A singular field is read by its own rule whatever wire type its key gave, and is present before
// its value is read.
bool AnyMessage::readField(const Field& field, std::uint8_t wireType, PBDataReader& reader) {
  const auto scalar = [&]<class T>(T value) {
    setHas(field.number, true);
    field.in<T>(*this) = value;
    return true;
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(readVarint(reader));
    case Kind::uint32: return scalar(static_cast<std::uint32_t>(readVarint(reader)));
    case Kind::enumeration: return scalar(static_cast<std::int32_t>(readVarint(reader)));
    case Kind::sint32: return scalar(signedFromVarint(readVarint(reader)));
    case Kind::boolean: return scalar(readVarint(reader) != 0);
    case Kind::bytes: field.in<Ref<Data>>(*this) = PBReaderReadData(reader); return true;
    case Kind::string: field.in<Ref<String>>(*this) = PBReaderReadString(reader); return true;
    case Kind::message: {
      const auto element = field.element->make();
      field.in<Ref<AnyMessage>>(*this) = element;
      return readElement(*element, reader);
    }
    case Kind::repeated: {
      const auto element = field.element->make();
      appendElement(field.in<Ref<MessageArray>>(*this), element);
      return readElement(*element, reader);
    }
    case Kind::packedUint32:
      return readPacked(reader, wireType, [&](std::uint64_t varint) {
        PBRepeatedUInt32Add(field.in<PBRepeatedUInt32>(*this), static_cast<std::uint32_t>(varint));
      });
    case Kind::packedSint32:
      return readPacked(reader, wireType, [&](std::uint64_t varint) {
        PBRepeatedInt32Add(field.in<PBRepeatedInt32>(*this), signedFromVarint(varint));
      });
  }
  fatal();
}

}  // namespace quorin
