#include "platform/protocolbuffer/PBDataReader.h"

namespace quorin {

namespace {

/// Where the next `length` bytes begin, after moving past them; null and `_error` when short.
const std::uint8_t* take(PBDataReader& reader, std::uint64_t length) {
  if (reader._error || length > reader._length - reader._pos) {
    reader._error = true;
    return nullptr;
  }
  const std::uint8_t* bytes = reader._bytes + reader._pos;
  reader._pos += length;
  return bytes;
}

/// The bytes behind a length, or an empty optional with `_error` set.
std::optional<Bytes> takeDelimited(PBDataReader& reader) {
  const std::uint64_t length = readVarint(reader);
  const std::uint8_t* bytes = take(reader, length);
  if (reader._error) return std::nullopt;
  return Bytes(bytes, static_cast<std::size_t>(length));
}

/// Field numbers compare as the decoders see them: by their low 16 bits.
bool sameField(std::uint64_t a, std::uint64_t b) { return (a & 0xffff) == (b & 0xffff); }

}  // namespace

Ref<Data> PBReaderReadData(PBDataReader& reader) {
  const auto bytes = takeDelimited(reader);
  return bytes ? make<Data>(*bytes) : nullptr;
}

Ref<String> PBReaderReadString(PBDataReader& reader) {
  const auto bytes = takeDelimited(reader);
  return bytes ? make<String>(std::string(bytes->begin(), bytes->end())) : nullptr;
}

bool PBReaderPlaceMark(PBDataReader& reader, PBReaderMark& mark) {
  const std::uint64_t length = readVarint(reader);
  if (reader._error || length > reader._length - reader._pos) return false;
  mark = reader._length;
  reader._length = reader._pos + length;
  return true;
}

void PBReaderRecallMark(PBDataReader& reader, PBReaderMark mark) { reader._length = mark; }

bool PBReaderSkipValueWithTag(PBDataReader& reader, std::uint64_t number, std::uint8_t wireType) {
  // Open groups by field number: nesting costs memory, never stack.
  std::vector<std::uint64_t> groups;
  while (true) {
    switch (wireType) {
      case 0: (void)readVarint(reader); break;
      case 1: (void)take(reader, 8); break;
      case 2: (void)takeDelimited(reader); break;
      case 3: groups.push_back(number); break;
      case 4:
        if (groups.empty() || !sameField(groups.back(), number)) return false;
        groups.pop_back();
        break;
      case 5: (void)take(reader, 4); break;
      default: return false;
    }
    if (reader._error) return false;
    if (groups.empty()) return true;
    const std::uint64_t key = readVarint(reader);
    if (reader._error) return false;
    number = key >> 3;
    wireType = key & 7;
  }
}

}  // namespace quorin
