#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Block.h"
#include "platform/foundation/Object.h"

namespace quorin {

using Bytes = std::span<const std::uint8_t>;

/// FNV-1a over bytes; the hash of `Data` and `String`.
[[nodiscard]] std::uint64_t hashBytes(Bytes bytes);

/// How many bytes behind a `Data`'s last one may be read.
inline constexpr std::size_t kReadableBehind = 16;

/// No bytes, behind which zeros lie.
inline constexpr std::uint8_t kZeros[kReadableBehind]{};
inline constexpr Bytes kNoBytes(kZeros, 0);

/// Copies in steps of `kReadableBehind`. Requires: as many bytes may be read and written behind the
/// last.
[[gnu::always_inline]] inline void copyInSteps(std::uint8_t* to, Bytes bytes) {
  for (std::size_t done = 0; done < bytes.size(); done += kReadableBehind)
    std::memcpy(to + done, bytes.data() + done, kReadableBehind);
}

/// An immutable byte buffer: one block of memory, zeros behind its end.
class Data final : public Part {
 public:
  [[nodiscard]] static Ref<Data> create(Bytes bytes);
  /// In a block; null where it has no room.
  [[nodiscard]] [[gnu::always_inline]] static Data* createIn(Block& block, Bytes bytes) {
    void* memory = block.take(sizeof(Data) + bytes.size() + kReadableBehind);
    if (!memory) return nullptr;
    auto* data = new (memory) Data(static_cast<std::uint32_t>(bytes.size()), block.first());
    data->fill(bytes);
    return data;
  }
  /// The same. Requires: `kReadableBehind` bytes may be read behind the last.
  [[nodiscard]] [[gnu::always_inline]] static Data* createFromPaddedIn(Block& block, Bytes padded) {
    void* memory = block.take(sizeof(Data) + padded.size() + kReadableBehind);
    if (!memory) return nullptr;
    auto* data = new (memory) Data(static_cast<std::uint32_t>(padded.size()), block.first());
    auto* content = reinterpret_cast<std::uint8_t*>(data + 1);
    copyInSteps(content, padded);
    std::memset(content + padded.size(), 0, kReadableBehind);
    return data;
  }
  /// Bytes that one of this length takes of a block at most.
  [[nodiscard]] static constexpr std::size_t mostIn(std::size_t length) {
    return sizeof(Data) + length + kReadableBehind + alignof(Data);
  }

  [[nodiscard]] Bytes bytes() const { return {content(), _length}; }
  [[nodiscard]] std::size_t length() const { return _length; }
  [[nodiscard]] bool isEqual(const Object& other) const override;
  [[nodiscard]] std::uint64_t hash() const override { return hashBytes(bytes()); }

  static void operator delete(Data* data, std::destroying_delete_t);

 private:
  explicit Data(std::uint32_t length) : _length(length) {}
  Data(std::uint32_t length, const void* whole) : Part(whole), _length(length) {}
  [[nodiscard]] const std::uint8_t* content() const {
    return reinterpret_cast<const std::uint8_t*>(this + 1);
  }
  void fill(Bytes bytes) {
    auto* content = reinterpret_cast<std::uint8_t*>(this + 1);
    if (!bytes.empty()) std::memcpy(content, bytes.data(), bytes.size());
    std::memset(content + bytes.size(), 0, kReadableBehind);
  }

  std::uint32_t _length;
};

/// Immutable text: any bytes; where they are not UTF-8 they are shown with U+FFFD.
class String final : public Part {
 public:
  [[nodiscard]] static Ref<String> create(std::string_view text);
  /// In a block; null where it has no room.
  [[nodiscard]] static String* createIn(Block& block, std::string_view text);
  /// The same. Requires: `kReadableBehind` bytes may be read behind the text.
  [[nodiscard]] [[gnu::always_inline]] static String* createFromPaddedIn(Block& block,
                                                                         Bytes padded) {
    void* memory = block.take(sizeof(String) + padded.size() + kReadableBehind);
    if (!memory) return nullptr;
    auto* string = new (memory) String(static_cast<std::uint32_t>(padded.size()), block.first());
    copyInSteps(reinterpret_cast<std::uint8_t*>(string + 1), padded);
    return string;
  }

  [[nodiscard]] std::string_view text() const { return {content(), _length}; }
  [[nodiscard]] bool isEqual(const Object& other) const override;
  [[nodiscard]] std::uint64_t hash() const override;

  static void operator delete(String* string, std::destroying_delete_t);

 private:
  explicit String(std::uint32_t length) : _length(length) {}
  String(std::uint32_t length, const void* whole) : Part(whole), _length(length) {}
  [[nodiscard]] const char* content() const { return reinterpret_cast<const char*>(this + 1); }

  std::uint32_t _length;
};

/// Lower-case hexadecimal, two digits a byte.
[[nodiscard]] std::string hexText(Bytes bytes);

/// Reads what `hexText` writes, in either case; empty where the text is not hexadecimal pairs.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view text);

/// The whole file, or null when it cannot be read.
[[nodiscard]] Ref<Data> dataWithContentsOfFile(const std::string& path);

}  // namespace quorin
