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
  constexpr std::size_t kStep = sizeof kHighBits;
  if (text.size() < kStep)
    return std::ranges::all_of(text, [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
  std::uint64_t all = 0;
  const auto add = [&](std::size_t at) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, kStep);
    all |= word;
  };
  for (std::size_t at = 0; at + kStep <= text.size(); at += kStep) add(at);
  add(text.size() - kStep);  // the last ones, some of them once more
  return (all & kHighBits) == 0;
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

/// The numbers below 1,000: as they are, with their length behind, and as three digits.
struct Thousand {
  std::array<std::array<char, 4>, 1000> plain{};
  std::array<std::array<char, 4>, 1000> threeDigits{};
};
constexpr Thousand kThousand = [] {
  Thousand made;
  for (std::size_t i = 0; i < 1000; ++i) {
    const auto digit = [](std::size_t number) { return static_cast<char>('0' + number % 10); };
    const std::array<char, 4> three{digit(i / 100), digit(i / 10), digit(i)};
    const std::size_t zeros = i >= 100 ? 0 : i >= 10 ? 1 : 2;
    made.threeDigits[i] = three;
    std::copy(three.begin() + zeros, three.end(), made.plain[i].begin());
    made.plain[i][3] = static_cast<char>(3 - zeros);
  }
  return made;
}();

// Each may write a character more than it puts.

[[gnu::always_inline]] inline char* putBelow1000(char* at, std::uint64_t number) {
  const auto& text = kThousand.plain[number];
  std::memcpy(at, text.data(), sizeof text);
  return at + text[3];
}
[[gnu::always_inline]] inline char* putThree(char* at, std::uint64_t below1000) {
  std::memcpy(at, kThousand.threeDigits[below1000].data(), 4);
  return at + 3;
}
[[gnu::always_inline]] inline char* putBelowMillion(char* at, std::uint64_t number) {
  if (number < 1000) return putBelow1000(at, number);
  return putThree(putBelow1000(at, number / 1000), number % 1000);
}
[[gnu::noinline]] char* putLarge(char* at, std::uint64_t number) {
  const std::uint64_t millions = number / 1'000'000;
  const std::uint64_t rest = number % 1'000'000;
  at = millions < 1'000'000 ? putBelowMillion(at, millions) : putLarge(at, millions);
  return putThree(putThree(at, rest / 1000), rest % 1000);
}
[[gnu::always_inline]] inline char* putDigits(char* at, std::uint64_t number) {
  return number < 1'000'000 ? putBelowMillion(at, number) : putLarge(at, number);
}

/// Writes two lower-case digits a byte, eight bytes at a time. Requires: `kReadableBehind` bytes
/// may be read, and twice as many characters be written, behind the last.
[[gnu::always_inline]] inline char* putHex(char* at, Bytes padded) {
  using Lanes [[gnu::vector_size(16)]] = unsigned char;
  constexpr std::size_t kStep = sizeof(Lanes) / 2;
  for (std::size_t done = 0; done < padded.size(); done += kStep) {
    Lanes bytes;
    std::memcpy(&bytes, padded.data() + done, sizeof bytes);
    const Lanes digits = __builtin_shufflevector(bytes >> 4, bytes & 15, 0, 16, 1, 17, 2, 18, 3, 19,
                                                 4, 20, 5, 21, 6, 22, 7, 23);
    const Lanes text = digits + '0' + (reinterpret_cast<Lanes>(digits > 9) & ('a' - '9' - 1));
    std::memcpy(at + 2 * done, &text, sizeof text);
  }
  return at + 2 * padded.size();
}

/// Literals that the compiler knows become a store each.
[[gnu::always_inline]] inline char* put(char* at, std::string_view ascii) {
  std::memcpy(at, ascii.data(), ascii.size());
  return at + ascii.size();
}

/// The same for texts of any length, of which many are as long as a time stamp.
[[gnu::always_inline]] inline char* putText(char* at, std::string_view ascii) {
  constexpr std::size_t kHalf = 16;
  if (ascii.size() < kHalf || ascii.size() > 2 * kHalf) return put(at, ascii);
  std::memcpy(at, ascii.data(), kHalf);
  char* const end = at + ascii.size();
  std::memcpy(end - kHalf, ascii.data() + ascii.size() - kHalf, kHalf);
  return end;
}

/// Each requires room for `kMostPadded`.
[[gnu::always_inline]] inline char* putPadded(char* at, std::string_view text, std::size_t more) {
  std::memcpy(at, text.data(), kPaddedStep);
  if (text.size() + more > kPaddedStep) [[unlikely]]
    std::memcpy(at + kPaddedStep, text.data() + kPaddedStep, kPaddedStep);
  return at + text.size() + more;
}
[[gnu::always_inline]] inline char* putPadded(char* at, std::string_view text) {
  return putPadded(at, text, 0);
}
[[gnu::always_inline]] inline char* putPaddedKey(char* at, std::string_view key) {
  return putPadded(at, key, kBehindPadded.size());
}

/// Writes into memory that its thread keeps: one at a time.
class Printer {
 public:
  Printer() : _memory(kept()), _at(begin()), _end(begin() + _memory.second) {}
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  /// What was written, until the thread prints again.
  [[nodiscard]] std::string_view text() const {
    return {begin(), static_cast<std::size_t>(_at - begin())};
  }

  [[gnu::always_inline]] void print(std::string_view ascii) {
    _at = put(room(ascii.size()), ascii);
  }

  void printWithSpace(std::string_view ascii) {
    _at = put(putText(room(ascii.size() + 1), ascii), " ");
  }

  [[gnu::always_inline]] void print(const Value& value) {
    if (isUsualNumber(value)) [[likely]]
      _at = putSigned(room(kLongestNumber), value.natural());
    else if (value.isPadded())
      _at = putPadded(room(kMostPadded), value.text());
    else
      printOther(value);
  }

  /// Null: no value.
  [[gnu::noinline]] void printList(const Elements* list) {
    if (!list || list->size() == 0) return print("[]");
    print("[");
    for (const Value& value : list->all()) {
      if (value.kind() == Value::Kind::dictionary && !value.isPlain()) [[likely]]
        printDictionary(static_cast<const Elements*>(value.held()));
      else
        print(value);
      _at = putSeparator(_at);
    }
    endBehindSeparator(_at);
  }

  /// Null: no entry.
  void printDictionary(const Elements* dictionary) {
    if (!dictionary) return print("[:]");
    if (dictionary->hasOwnKeys()) [[unlikely]]
      return printWithOwnKeys(*dictionary);
    const Literal* key = dictionary->keys();
    const Value* value = dictionary->first();
    const Value* const end = value + dictionary->size();
    const std::size_t most = dictionary->size() * kMostOfEntry;
    char* at = put(room(most), "[");
    for (std::int64_t present = dictionary->present(); value != end;
         ++key, ++value, present >>= 1) {
      if ((present & 1) == 0) [[unlikely]]
        continue;
      at = putPaddedKey(at, key->text);
      if (isUsualNumber(*value)) [[likely]] {
        at = putSigned(at, value->natural());
      } else if (value->isPadded()) {
        at = putPadded(at, value->text());
      } else {
        _at = at;
        printOther(*value);
        at = room(most);
      }
      at = putSeparator(at);
    }
    endEntries(at);
  }

 private:
  using Memory = std::pair<std::unique_ptr<char[]>, std::size_t>;
  static constexpr std::size_t kLongestNumber = 21;
  static constexpr std::size_t kMore = 8;  // for what stands between two values
  static constexpr std::size_t kSeparator = 2;
  static constexpr std::size_t kMostOfEntry = 9 * sizeof(Value);
  static_assert(kMostOfEntry >= 2 * kMostPadded + kSeparator && kMostPadded > kLongestNumber);

  static Memory& kept() {
    thread_local Memory memory;
    return memory;
  }
  [[nodiscard]] char* begin() const { return _memory.first.get(); }

  /// One that 64 bits hold with its sign, whatever its value: of booleans 1 or 0.
  [[nodiscard]] static bool isUsualNumber(const Value& value) {
    return value.kind() >= Value::Kind::boolean && value.kind() <= Value::Kind::int64;
  }

  /// Of the bits of a signed number.
  [[gnu::always_inline]] static char* putSigned(char* at, std::uint64_t natural) {
    if (natural < 1000) [[likely]]
      return putBelow1000(at, natural);
    if (static_cast<std::int64_t>(natural) < 0) {
      *at++ = '-';
      natural = 0 - natural;
    }
    return putDigits(at, natural);
  }

  [[gnu::noinline]] void printWithOwnKeys(const Elements& dictionary) {
    char* at = put(room(1), "[");
    for (std::size_t place = 0; place < dictionary.size(); ++place) {
      if (!dictionary.has(place)) continue;
      const std::string_view key = dictionary.keys()[place].text;
      _at = at;
      at = put(room(key.size()), key);
      _at = put(at, kBehindPadded);
      print(dictionary.first()[place]);
      at = putSeparator(_at);
    }
    endEntries(at);
  }

  /// Neither a usual number nor padded.
  void printOther(const Value& value) {
    switch (value.kind()) {
      case Value::Kind::nothing: return print("null");
      case Value::Kind::uint64: return printLarge(value.natural());
      case Value::Kind::boolean:
      case Value::Kind::int32:
      case Value::Kind::uint32:
      case Value::Kind::int64: return;  // see `print`
      case Value::Kind::float32:
      case Value::Kind::float64: return printReal(value);
      case Value::Kind::text: return printText(value);
      case Value::Kind::data: return printBytes(value.bytes());
      case Value::Kind::list: return printList(value.elements());
      case Value::Kind::dictionary: return printDictionary(value.elements());
    }
  }

  // Each by itself, so that the usual ones need no memory of the stack.

  [[gnu::noinline]] void printLarge(std::uint64_t number) {
    _at = putDigits(room(kLongestNumber), number);
  }
  [[gnu::noinline]] void printReal(const Value& value) {
    print(value.kind() == Value::Kind::float32 ? printed(value.float32())
                                               : printed(value.float64()));
  }

  /// Four bytes are one store, the others give way.
  [[gnu::always_inline]] static char* putSeparator(char* at) {
    std::memcpy(at, ", \0", 4);
    return at + kSeparator;
  }
  /// Puts the closing bracket in the place of the last separator.
  [[gnu::always_inline]] void endBehindSeparator(char* at) {
    *(at - kSeparator) = ']';
    _at = at - kSeparator + 1;
  }
  /// The same of a dictionary, which may have no entry.
  [[gnu::always_inline]] void endEntries(char* at) {
    if (at[-1] == '[') [[unlikely]]
      _at = put(at, ":]");
    else
      endBehindSeparator(at);
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

  [[gnu::noinline]] void printText(const Value& value) {
    const std::string_view text = value.text();
    if (value.isPlain() || isAscii(text))
      _at = putText(room(text.size()), text);
    else
      printWithReplacements(text);
  }
  [[gnu::noinline]] void printWithReplacements(std::string_view text) {
    std::string shown;
    appendUtf8(shown, text);
    print(shown);
  }

  /// Requires: a `Data`'s.
  [[gnu::noinline]] void printBytes(Bytes bytes) {
    char* at = put(room(2 * (bytes.size() + kReadableBehind) + 2), "<");
    at = putHex(at, bytes);
    _at = put(at, ">");
  }

  Memory& _memory;
  char* _at;
  char* _end;
};

}  // namespace

void appendPrinted(std::string& out, float value) { appendDecimal(out, value); }
void appendPrinted(std::string& out, double value) { appendDecimal(out, value); }
void appendPrinted(std::string& out, const Value& value) {
  Printer printer;
  printer.print(value);
  out += printer.text();
}
void appendPrinted(std::string& out, const List& list) { appendPrinted(out, Value(list)); }
void appendPrinted(std::string& out, const Dictionary& dictionary) {
  Printer printer;
  printer.printDictionary(dictionary.elements());
  out += printer.text();
}

std::string_view printedBehind(std::string_view before, const Dictionary& dictionary) {
  Printer printer;
  printer.printWithSpace(before);
  printer.printDictionary(dictionary.elements());
  return printer.text();
}

}  // namespace quorin
