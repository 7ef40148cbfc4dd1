#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Object.h"

namespace quorin {

using Bytes = std::span<const std::uint8_t>;

/// FNV-1a over bytes; the hash of `Data` and `String`.
[[nodiscard]] std::uint64_t hashBytes(Bytes bytes);

/// An immutable byte buffer.
class Data final : public Object {
 public:
  explicit Data(Bytes bytes) : _bytes(bytes.begin(), bytes.end()) {}
  explicit Data(std::vector<std::uint8_t> bytes) : _bytes(std::move(bytes)) {}

  [[nodiscard]] Bytes bytes() const { return _bytes; }
  [[nodiscard]] std::size_t length() const { return _bytes.size(); }
  [[nodiscard]] bool isEqual(const Object& other) const override;
  [[nodiscard]] std::uint64_t hash() const override { return hashBytes(_bytes); }

 private:
  std::vector<std::uint8_t> _bytes;
};

/// Immutable text: any bytes; where they are not UTF-8 they are shown with U+FFFD.
class String final : public Object {
 public:
  explicit String(std::string text) : _text(std::move(text)) {}

  [[nodiscard]] std::string_view text() const { return _text; }
  [[nodiscard]] bool isEqual(const Object& other) const override;
  [[nodiscard]] std::uint64_t hash() const override;

 private:
  std::string _text;
};

/// Lower-case hexadecimal, two digits a byte.
[[nodiscard]] std::string hexText(Bytes bytes);

/// Reads what `hexText` writes, in either case; empty where the text is not hexadecimal pairs.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view text);

/// The whole file, or null when it cannot be read.
[[nodiscard]] Ref<Data> dataWithContentsOfFile(const std::string& path);

}  // namespace quorin
