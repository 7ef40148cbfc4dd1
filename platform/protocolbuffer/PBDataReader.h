#pragma once

#include <limits>

#include "platform/foundation/Data.h"

namespace quorin {

/// A position in a buffer of wire bytes. The decoders move it themselves.
/// Requires: the buffer outlives the reader.
struct PBDataReader {
  explicit PBDataReader(Bytes bytes) : _bytes(bytes.data()), _length(bytes.size()) {}
  /// No data are no bytes.
  explicit PBDataReader(const Data* data) : PBDataReader(data ? data->bytes() : Bytes{}) {
    _padded = data != nullptr;
  }

  const std::uint8_t* _bytes;
  std::uint64_t _pos = 0;
  std::uint64_t _length;  // the end, as the innermost mark narrows it
  bool _error = false;
  bool _padded = false;  // `kReadableBehind` bytes may be read behind the buffer
};

/// One varint of at most ten bytes. Out of data: sets `_error` and gives 0. A tenth byte that still
/// announces another: 0, without an error.
[[nodiscard]] inline std::uint64_t readVarint(PBDataReader& reader) {
  std::uint64_t result = 0;
  for (unsigned count = 0; count < 10; ++count) {
    if (reader._pos == std::numeric_limits<std::uint64_t>::max() ||
        reader._pos + 1 > reader._length) {
      reader._error = true;
      return 0;
    }
    const std::uint8_t byte = reader._bytes[reader._pos++];
    result |= std::uint64_t{byte & 0x7fu} << (count * 7);
    if (byte < 0x80) return reader._error ? 0 : result;
  }
  return 0;
}

/// Length varint and that many bytes. Null, with `_error` set, when they are not all there.
[[nodiscard]] Ref<Data> PBReaderReadData(PBDataReader& reader);
[[nodiscard]] Ref<String> PBReaderReadString(PBDataReader& reader);

/// The end that a mark narrowed.
using PBReaderMark = std::uint64_t;

/// Reads a length and narrows the reader to so many bytes. False when they are not all there.
[[nodiscard]] bool PBReaderPlaceMark(PBDataReader& reader, PBReaderMark& mark);
/// Restores the outer end; the position stays where it is.
void PBReaderRecallMark(PBDataReader& reader, PBReaderMark mark);

/// Consumes one value of the wire type that the key of field `number` gave. False on malformed
/// data: cut short, an unknown wire type, a group that is not ended by its own number.
[[nodiscard]] bool PBReaderSkipValueWithTag(PBDataReader& reader, std::uint64_t number,
                                            std::uint8_t wireType);

}  // namespace quorin
