#pragma once

#include <algorithm>
#include <string>

#include "platform/platform.h"

namespace quorin::fuzz {

/// A fuzzer's bytes, taken from the front as what a target needs. Behind their end stand zeros.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : _rest(bytes, size) {}

  [[nodiscard]] bool empty() const { return _rest.empty(); }
  [[nodiscard]] std::uint8_t byte() {
    if (_rest.empty()) return 0;
    const std::uint8_t first = _rest.front();
    _rest = _rest.subspan(1);
    return first;
  }
  /// One of so many choices.
  [[nodiscard]] std::size_t choice(std::size_t count) { return byte() % count; }
  /// Eight bytes, the low one first.
  [[nodiscard]] std::uint64_t number() {
    std::uint64_t number = 0;
    for (unsigned shift = 0; shift < 64; shift += 8) number |= std::uint64_t{byte()} << shift;
    return number;
  }
  /// A length of one byte, and so many bytes or as many as there are. 255: it stands in two more.
  [[nodiscard]] Bytes chunk() {
    constexpr std::uint8_t kLonger = 255;
    std::size_t length = byte();
    if (length == kLonger) {
      length = byte();
      length |= static_cast<std::size_t>(byte()) << 8;
    }
    const Bytes chunk = _rest.first(std::min(length, _rest.size()));
    _rest = _rest.subspan(chunk.size());
    return chunk;
  }
  [[nodiscard]] std::string text() {
    const Bytes bytes = chunk();
    return {bytes.begin(), bytes.end()};
  }
  [[nodiscard]] Bytes rest() const { return _rest; }

 private:
  Bytes _rest;
};

}  // namespace quorin::fuzz
