#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>

#include "platform/foundation/Value.h"

namespace quorin {

namespace {

template <class Number>
void appendDecimal(std::string& out, Number value) {
  char buffer[512];  // the longest fixed form of a double has 309 digits before its point
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr;
  const std::string_view digits(buffer, static_cast<std::size_t>(end - buffer));
  out += digits;
  if (digits.find_first_not_of("-0123456789") == std::string_view::npos) out += ".0";
}

/// The length of the UTF-8 sequence at the start, or 0 and the length of its maximal part.
std::pair<std::size_t, std::size_t> sequence(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return {1, 1};
  const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return {0, 1};
  for (std::size_t i = 1; i < length; ++i) {
    // The second byte's range keeps out over-long forms, surrogates and what lies past U+10FFFF.
    const std::uint8_t low = i == 1 && first == 0xe0 ? 0xa0 : i == 1 && first == 0xf0 ? 0x90 : 0x80;
    const std::uint8_t high = i == 1 && first == 0xed   ? 0x9f
                              : i == 1 && first == 0xf4 ? 0x8f
                                                        : 0xbf;
    if (i == text.size() || byte(i) < low || byte(i) > high) return {0, i};
  }
  return {length, length};
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
}

}  // namespace

void appendUtf8(std::string& out, std::string_view text) {
  if (isAscii(text)) {
    out += text;
    return;
  }
  while (!text.empty()) {
    const auto [whole, part] = sequence(text);
    if (whole)
      out += text.substr(0, whole);
    else
      out += "\xef\xbf\xbd";
    text.remove_prefix(part);
  }
}

namespace {

constexpr auto kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes into memory that its thread keeps, and appends that to a text when it ends.
class Printer {
 public:
  explicit Printer(std::string& out) : _out(out), _memory(std::exchange(kept(), {})) {}
  ~Printer() {
    _out.append(_memory.first.get(), _size);
    kept() = std::move(_memory);
  }
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  void print(const Value& value) {
    switch (value.kind()) {
      case Value::Kind::nothing: return print("null");
      case Value::Kind::boolean: return print(value.boolean() ? "1" : "0");
      case Value::Kind::uint64: return print(value.natural(), false);
      case Value::Kind::int32:
      case Value::Kind::uint32:
      case Value::Kind::int64: {
        const std::int64_t number = *value.integer();
        const auto natural = static_cast<std::uint64_t>(number);
        return print(number < 0 ? 0 - natural : natural, number < 0);
      }
      case Value::Kind::float32: return print(printed(value.float32()));
      case Value::Kind::float64: return print(printed(value.float64()));
      case Value::Kind::text: return printText(value);
      case Value::Kind::data: return print(value.data()->bytes());
      case Value::Kind::list: return print(value.list());
      case Value::Kind::dictionary: return print(value.dictionary());
    }
  }

  void print(const List& list) {
    std::string_view separator = "[";
    for (const Value& value : list) {
      print(std::exchange(separator, ", "));
      print(value);
    }
    print(list.empty() ? "[]" : "]");
  }

  void print(const Dictionary& dictionary) {
    std::string_view separator = "[";
    for (const auto& [key, value] : dictionary) {
      print(std::exchange(separator, ", "));
      printText(key);
      print(": ");
      print(value);
    }
    print(dictionary.empty() ? "[:]" : "]");
  }

 private:
  using Memory = std::pair<std::unique_ptr<char[]>, std::size_t>;
  static Memory& kept() {
    thread_local Memory memory;
    return memory;
  }

  /// Where so many characters may be written.
  char* room(std::size_t count) {
    if (_size + count > _memory.second) grow(count);
    return _memory.first.get() + _size;
  }
  [[gnu::noinline]] void grow(std::size_t count) {
    constexpr std::size_t kLeast = 4096;
    const std::size_t size = std::max(kLeast, 2 * (_size + count));
    Memory larger(new char[size], size);
    if (_size > 0) std::memcpy(larger.first.get(), _memory.first.get(), _size);
    _memory = std::move(larger);
  }

  /// Literals that the compiler knows become a store each.
  [[gnu::always_inline]] void print(std::string_view ascii) {
    char* at = room(ascii.size());
    std::memcpy(at, ascii.data(), ascii.size());
    _size += ascii.size();
  }

  void printText(const Value& value) {
    const std::string_view text = value.text();
    if (!value.isPlain() && !isAscii(text)) {
      std::string shown;
      appendUtf8(shown, text);
      return print(shown);
    }
    if (!value.isPadded()) return print(text);
    char* at = room(text.size() + kPaddedStep);
    for (std::size_t done = 0; done < text.size(); done += kPaddedStep)
      std::memcpy(at + done, text.data() + done, kPaddedStep);
    _size += text.size();
  }

  [[gnu::always_inline]] void print(std::uint64_t number, bool negative) {
    constexpr std::size_t kMost = 21;
    char* at = room(kMost);
    if (negative) *at++ = '-';
    if (number < 10) {
      *at++ = static_cast<char>('0' + number);
    } else if (number < 100) {
      std::memcpy(at, &kDigitPairs[number * 2], 2);
      at += 2;
    } else {
      at = std::to_chars(at, at + kMost, number).ptr;
    }
    _size = static_cast<std::size_t>(at - _memory.first.get());
  }

  void print(Bytes bytes) {
    print("<");
    char* at = room(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
      *at++ = "0123456789abcdef"[byte >> 4];
      *at++ = "0123456789abcdef"[byte & 15];
    }
    _size += bytes.size() * 2;
    print(">");
  }

  std::string& _out;
  Memory _memory;
  std::size_t _size = 0;
};

}  // namespace

void appendPrinted(std::string& out, float value) { appendDecimal(out, value); }
void appendPrinted(std::string& out, double value) { appendDecimal(out, value); }
void appendPrinted(std::string& out, const Value& value) { Printer(out).print(value); }
void appendPrinted(std::string& out, const List& list) { Printer(out).print(list); }
void appendPrinted(std::string& out, const Dictionary& dictionary) {
  Printer(out).print(dictionary);
}

}  // namespace quorin
