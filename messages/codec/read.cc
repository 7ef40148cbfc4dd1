#include "messages/codec/unrolled.h"

namespace quorin {

namespace {

constexpr std::uint8_t kDelimited = 2;
constexpr std::uint8_t kEndGroup = 4;

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

void logUnknownTag(std::uint16_t tag, std::uint32_t value) {
  if (!isSystemLogOn()) return;
  char line[48];
  std::snprintf(line, sizeof line, "Unknown tag: %x:%u", static_cast<unsigned>(tag), value);
  systemLog(line);
}

bool AnyMessage::readFrom(PBDataReader& reader) {
  if (reader._padded && !reader._error && reader._pos < reader._length &&
      takeWhole(_table.read, {reader._bytes + reader._pos, reader._bytes + reader._length})) {
    reader._pos = reader._length;
    return true;
  }
  return readFields(reader);
}

bool AnyMessage::readFields(PBDataReader& reader) {
  const MessageTable& rows = table();
  unfold();
  while (true) {
    if (reader._pos >= reader._length || reader._error) return !reader._error;
    switch (readOne(rows, reader)) {
      case Reading::goesOn: break;
      case Reading::ends: return !reader._error;
      case Reading::failed: return false;
    }
  }
}

AnyMessage::Reading AnyMessage::readOne(const MessageTable& rows, PBDataReader& reader) {
  const std::uint64_t key = readVarint(reader);
  const auto wireType = static_cast<std::uint8_t>(key & 7);
  const bool cut = rows.keyRule == KeyRule::cut;
  const std::uint64_t number = cut ? key >> 3 & 0xffff : key >> 3;
  if (reader._error || wireType == kEndGroup) return Reading::ends;
  const auto tag = static_cast<std::uint16_t>(number);
  if (cut && KBBMetricUtility::isValidMetricIdTag(tag, rows.name)) {
    logUnknownTag(tag, static_cast<std::uint32_t>(readVarint(reader)));
    return Reading::goesOn;
  }
  const Field* field = rows.find(number);
  const bool read = field ? readField(*field, wireType, reader)
                          : PBReaderSkipValueWithTag(reader, number, wireType);
  return read ? Reading::goesOn : Reading::failed;
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
