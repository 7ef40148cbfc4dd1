#include <charconv>

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

template <class Integer>
void appendInteger(std::string& out, Integer value) {
  char buffer[24];
  out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
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

}  // namespace

void appendUtf8(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const auto [whole, part] = sequence(text);
    if (whole)
      out += text.substr(0, whole);
    else
      out += "\xef\xbf\xbd";
    text.remove_prefix(part);
  }
}

void appendPrinted(std::string& out, float value) { appendDecimal(out, value); }
void appendPrinted(std::string& out, double value) { appendDecimal(out, value); }

void appendPrinted(std::string& out, const Value& value) {
  switch (value.kind()) {
    case Value::Kind::nothing: out += "null"; return;
    case Value::Kind::boolean: out += value.boolean() ? '1' : '0'; return;
    case Value::Kind::uint64: return appendInteger(out, value.natural());
    case Value::Kind::int32:
    case Value::Kind::uint32:
    case Value::Kind::int64: return appendInteger(out, *value.integer());
    case Value::Kind::float32: return appendDecimal(out, value.float32());
    case Value::Kind::float64: return appendDecimal(out, value.float64());
    case Value::Kind::text: return appendUtf8(out, value.text());
    case Value::Kind::data:
      out.append("<").append(hexText(value.data()->bytes())).append(">");
      return;
    case Value::Kind::list: return appendPrinted(out, value.list());
    case Value::Kind::dictionary: return appendPrinted(out, value.dictionary());
  }
}

void appendPrinted(std::string& out, const List& list) {
  out += '[';
  const char* separator = "";
  for (const Value& value : list) {
    out += std::exchange(separator, ", ");
    appendPrinted(out, value);
  }
  out += ']';
}

void appendPrinted(std::string& out, const Dictionary& dictionary) {
  if (dictionary.empty()) {
    out += "[:]";
    return;
  }
  out += '[';
  const char* separator = "";
  for (const auto& [key, value] : dictionary) {
    out += std::exchange(separator, ", ");
    appendPrinted(out, key);
    out += ": ";
    appendPrinted(out, value);
  }
  out += ']';
}

}  // namespace quorin
