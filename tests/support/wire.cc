#include "tests/support/wire.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <stdexcept>

namespace quorin::test {

namespace {

class WireText {
 public:
  explicit WireText(std::string_view text) : _rest(text) {}

  /// Fields up to the end or to a closing brace.
  std::string fields() {
    std::string bytes;
    for (skipBlanks(); !_rest.empty() && _rest.front() != '}'; skipBlanks()) bytes += field();
    return bytes;
  }

  [[nodiscard]] bool atEnd() const { return _rest.empty(); }

 private:
  static std::string varint(std::uint64_t value) {
    std::string bytes;
    for (; value > 0x7f; value >>= 7) bytes += static_cast<char>(value | 0x80);
    return bytes + static_cast<char>(value);
  }

  void skipBlanks() { _rest.remove_prefix(std::min(_rest.find_first_not_of(" \n"), _rest.size())); }

  bool take(char c) {
    if (_rest.empty() || _rest.front() != c) return false;
    _rest.remove_prefix(1);
    return true;
  }

  std::string_view upTo(char end) {
    const auto content = _rest.substr(0, _rest.find(end));
    _rest.remove_prefix(content.size());
    if (!take(end)) throw std::invalid_argument("not closed: " + std::string(content));
    return content;
  }

  template <class Number>
  Number number() {
    Number value{};
    const auto [end, error] = std::from_chars(_rest.data(), _rest.data() + _rest.size(), value);
    if (error != std::errc()) throw std::invalid_argument("not a number: " + std::string(_rest));
    _rest.remove_prefix(static_cast<std::size_t>(end - _rest.data()));
    return value;
  }

  std::string scalar() {
    if (!take('~')) return varint(number<std::uint64_t>());
    const auto value = static_cast<std::uint32_t>(number<std::int32_t>());
    return varint(value << 1 ^ (value >> 31 ? 0xffffffff : 0));
  }

  static std::string fromHex(std::string_view hex) {
    std::string bytes;
    for (; hex.size() >= 2; hex.remove_prefix(2)) {
      unsigned byte = 0;
      std::from_chars(hex.data(), hex.data() + 2, byte, 16);
      bytes += static_cast<char>(byte);
    }
    return bytes;
  }

  std::string packed() {
    std::string bytes;
    for (skipBlanks(); !take(']'); skipBlanks()) bytes += scalar();
    return bytes;
  }

  std::string nested() {
    std::string bytes = fields();
    if (!take('}')) throw std::invalid_argument("a nested message is not closed");
    return bytes;
  }

  std::string field() {
    const auto key = number<std::uint64_t>() << 3;
    if (!take(':')) throw std::invalid_argument("no value: " + std::string(_rest));
    std::string content;
    if (take('\''))
      content = upTo('\'');
    else if (take('<'))
      content = fromHex(upTo('>'));
    else if (take('['))
      content = packed();
    else if (take('{'))
      content = nested();
    else
      return varint(key) + scalar();
    return varint(key | 2) + varint(content.size()) + content;
  }

  std::string_view _rest;
};

}  // namespace

std::string wire(std::string_view fields) {
  WireText text(fields);
  const std::string bytes = text.fields();
  if (!text.atEnd()) throw std::invalid_argument("a brace too many");
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    hex += kDigits[static_cast<std::uint8_t>(c) >> 4];
    hex += kDigits[static_cast<std::uint8_t>(c) & 15];
  }
  return hex;
}

}  // namespace quorin::test
