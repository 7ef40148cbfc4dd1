#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>

#include "platform/foundation/Dictionary.h"

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
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::uint64_t word = 0;
  for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
    std::memcpy(&word, text.data(), sizeof word);
    if (word & kHighBits) return false;
  }
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

[[gnu::always_inline]] inline char* putPair(char* at, std::uint32_t below100) {
  std::memcpy(at, &kDigitPairs[below100 * 2], 2);
  return at + 2;
}

/// Of a number below 10,000.
[[gnu::always_inline]] inline char* putFew(char* at, std::uint32_t number) {
  if (number < 10) {
    *at = static_cast<char>('0' + number);
    return at + 1;
  }
  if (number < 100) return putPair(at, number);
  const std::uint32_t hundreds = number / 100;
  if (hundreds >= 10)
    at = putPair(at, hundreds);
  else
    *at++ = static_cast<char>('0' + hundreds);
  return putPair(at, number % 100);
}

/// Requires: room for 20 characters.
[[gnu::always_inline]] inline char* putDigits(char* at, std::uint64_t number) {
  if (number >= 100'000'000) return std::to_chars(at, at + 20, number).ptr;
  const auto whole = static_cast<std::uint32_t>(number);
  if (whole < 10'000) return putFew(at, whole);
  const std::uint32_t rest = whole % 10'000;
  return putPair(putPair(putFew(at, whole / 10'000), rest / 100), rest % 100);
}

/// Literals that the compiler knows become a store each.
[[gnu::always_inline]] inline char* put(char* at, std::string_view ascii) {
  std::memcpy(at, ascii.data(), ascii.size());
  return at + ascii.size();
}

/// Requires: room for a step more than the text is long, which may be read in such steps.
[[gnu::always_inline]] inline char* putPadded(char* at, std::string_view text) {
  for (std::size_t done = 0; done < text.size(); done += kPaddedStep)
    std::memcpy(at + done, text.data() + done, kPaddedStep);
  return at + text.size();
}

/// Writes into memory that its thread keeps, and appends that to a text when it ends.
class Printer {
 public:
  explicit Printer(std::string& out)
      : _out(out),
        _memory(std::exchange(kept(), {})),
        _at(begin()),
        _end(begin() + _memory.second) {}
  ~Printer() {
    _out.append(begin(), static_cast<std::size_t>(_at - begin()));
    kept() = std::move(_memory);
  }
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  [[gnu::always_inline]] void print(const Value& value) {
    if (isUsualNumber(value)) [[likely]]
      _at = putSigned(room(kLongestNumber), *value.integer());
    else
      printOther(value);
  }

  void print(const List& list) {
    if (list.empty()) return print("[]");
    print("[");
    for (const Value& value : list) {
      print(value);
      print(kSeparator);
    }
    endBehindSeparator();
  }

  void print(const Dictionary& dictionary) {
    if (dictionary.empty()) return print("[:]");
    print("[");
    for (const auto& [key, value] : dictionary) {
      if (!key.padded) [[unlikely]] {
        print(Value(key));
        print(kColon);
        print(value);
        print(kSeparator);
        continue;
      }
      const std::string_view text = key.text;
      char* at = room(text.size() + kPaddedStep + kLongestNumber);
      at = put(putPadded(at, text), kColon);
      if (isUsualNumber(value)) [[likely]] {
        at = putSigned(at, *value.integer());
      } else if (value.isPadded()) {
        _at = at;
        const std::string_view shown = value.text();
        at = putPadded(room(shown.size() + kPaddedStep), shown);
      } else {
        _at = at;
        printOther(value);
        at = room(kSeparator.size());
      }
      _at = put(at, kSeparator);
    }
    endBehindSeparator();
  }

 private:
  using Memory = std::pair<std::unique_ptr<char[]>, std::size_t>;
  static constexpr std::size_t kLongestNumber = 21;
  static constexpr std::size_t kMore = 8;  // for what stands between two values
  static constexpr std::string_view kSeparator = ", ";
  static constexpr std::string_view kColon = ": ";

  static Memory& kept() {
    thread_local Memory memory;
    return memory;
  }
  [[nodiscard]] char* begin() const { return _memory.first.get(); }

  /// One that 64 bits hold with its sign, whatever its value.
  [[nodiscard]] static bool isUsualNumber(const Value& value) {
    return value.isInteger() && value.kind() != Value::Kind::uint64;
  }

  static char* putSigned(char* at, std::int64_t number) {
    if (number >= 0) return putDigits(at, static_cast<std::uint64_t>(number));
    *at = '-';
    return putDigits(at + 1, 0 - static_cast<std::uint64_t>(number));
  }

  void printOther(const Value& value) {
    switch (value.kind()) {
      case Value::Kind::nothing: return print("null");
      case Value::Kind::boolean: return print(value.boolean() ? "1" : "0");
      case Value::Kind::uint64: _at = putDigits(room(kLongestNumber), value.natural()); return;
      case Value::Kind::int32:
      case Value::Kind::uint32:
      case Value::Kind::int64: return;  // see `print`
      case Value::Kind::float32: return print(printed(value.float32()));
      case Value::Kind::float64: return print(printed(value.float64()));
      case Value::Kind::text: return printText(value);
      case Value::Kind::data: return print(value.data()->bytes());
      case Value::Kind::list: return print(value.list());
      case Value::Kind::dictionary: return print(value.dictionary());
    }
  }

  /// Puts the closing bracket in the place of the last separator.
  void endBehindSeparator() {
    *(_at - 2) = ']';
    --_at;
  }

  /// Where so many characters, and `kMore`, may be written.
  [[gnu::always_inline]] char* room(std::size_t count) {
    if (count + kMore > static_cast<std::size_t>(_end - _at)) [[unlikely]]
      grow(count + kMore);
    return _at;
  }
  [[gnu::noinline]] void grow(std::size_t count) {
    constexpr std::size_t kLeast = 4096;
    const auto written = static_cast<std::size_t>(_at - begin());
    const std::size_t size = std::max(kLeast, 2 * (written + count));
    Memory larger(new char[size], size);
    if (written > 0) std::memcpy(larger.first.get(), begin(), written);
    _memory = std::move(larger);
    _at = begin() + written;
    _end = begin() + size;
  }

  [[gnu::always_inline]] void print(std::string_view ascii) {
    _at = put(room(ascii.size()), ascii);
  }

  [[gnu::always_inline]] void printText(const Value& value) {
    if (value.isPadded()) {
      const std::string_view text = value.text();
      _at = putPadded(room(text.size() + kPaddedStep), text);
    } else {
      printUnpadded(value);
    }
  }
  void printUnpadded(const Value& value) {
    const std::string_view text = value.text();
    if (value.isPlain() || isAscii(text)) return print(text);
    std::string shown;
    appendUtf8(shown, text);
    print(shown);
  }

  void print(Bytes bytes) {
    char* at = put(room(2 * bytes.size() + 2), "<");
    for (const std::uint8_t byte : bytes) {
      *at++ = "0123456789abcdef"[byte >> 4];
      *at++ = "0123456789abcdef"[byte & 15];
    }
    _at = put(at, ">");
  }

  std::string& _out;
  Memory _memory;
  char* _at;
  char* _end;
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
