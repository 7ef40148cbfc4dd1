#include "platform/terminal/glyphs.h"

#include <algorithm>
#include <cwchar>

namespace quorin::terminal {

namespace {

constexpr char32_t kReplacement = 0xfffd;
constexpr std::string_view kEllipsis = "…";
constexpr std::wstring_view kSeparators = L" _,;:/|";

struct Likeness {
  char32_t sign;
  std::string_view ascii;
};

/// How the signs that we print ourselves look in ASCII.
constexpr Likeness kLikenesses[] = {
    {U'›', ">"},  {U'│', "|"}, {U'─', "-"}, {U'…', "~"}, {U'•', "*"}, {U'↑', "^"},
    {U'↓', "v"},  {U'×', "x"}, {U'←', "<"}, {U'→', ">"}, {U'·', "."}, {U'≤', "<="},
    {U'≥', ">="}, {U'−', "-"}, {U'–', "-"}, {U'µ', "u"}, {U'°', "o"},
};

struct Range {
  char32_t first;
  char32_t last;
};

/// Takes no column and yet moves what stands around it.
constexpr Range kInvisible[] = {
    {0x200b, 0x200f}, {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfe00, 0xfe0f}, {0xfeff, 0xfeff},
};

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

/// Takes the next code point off the text; a byte that begins none becomes U+FFFD.
char32_t takeCodePoint(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80                    ? 1
                             : lead >= 0xc2 && lead <= 0xdf ? 2
                             : lead >= 0xe0 && lead <= 0xef ? 3
                             : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                            : 0;
  const bool whole = length > 0 && text.size() >= length &&
                     std::ranges::all_of(text.substr(1, length - 1), isContinuation);
  char32_t code = kReplacement;
  if (whole) {
    code = length == 1 ? lead : lead & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i)
      code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3fU);
  }
  text.remove_prefix(whole ? length : 1);
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xd800 && code <= 0xdfff;
  return surrogate || code > 0x10ffff || (whole && code < kSmallest[length]) ? kReplacement : code;
}

/// As `wcwidth`, with -1 for whatever must not reach a terminal.
int widthOf(char32_t code) {
  if (std::ranges::any_of(kInvisible,
                          [&](Range range) { return code >= range.first && code <= range.last; }))
    return -1;
  return wcwidth(static_cast<wchar_t>(code));
}

void addUnicode(Glyphs& glyphs, char32_t code) {
  int columns = widthOf(code);
  if (columns < 0) {
    code = kReplacement;
    columns = 1;
  }
  if (columns > 0) {
    glyphs.push_back({{static_cast<wchar_t>(code)}, columns});
    return;
  }
  if (glyphs.empty()) glyphs.emplace_back();
  auto& base = glyphs.back().text;
  const auto free = std::ranges::find(base, L'\0');
  if (free < base.end() - 1) *free = static_cast<wchar_t>(code);
}

void addAscii(Glyphs& glyphs, char32_t code) {
  const auto known = std::ranges::find(kLikenesses, code, &Likeness::sign);
  const char plain = code >= 0x20 && code < 0x7f ? static_cast<char>(code) : '?';
  const std::string_view shown =
      known == std::end(kLikenesses) ? std::string_view(&plain, 1) : known->ascii;
  for (char c : shown) glyphs.push_back({{static_cast<wchar_t>(c)}, 1});
}

void append(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr unsigned kLead[] = {0, 0xc0, 0xe0, 0xf0};
  out += static_cast<char>(kLead[more] | (code >> (6 * more)));
  for (int i = more - 1; i >= 0; --i) out += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3f));
}

using Iterator = Glyphs::const_iterator;

/// The end of the longest beginning that fits; at least one glyph where there is one.
Iterator endOfLine(Iterator first, Iterator last, int columns) {
  Iterator end = first;
  int used = 0;
  while (end != last && used + end->columns <= columns) used += (end++)->columns;
  if (end == first && first != last) ++end;
  return end;
}

Iterator behindSeparator(Iterator first, Iterator end) {
  for (Iterator at = end; at - first > (end - first) / 2; --at)
    if (kSeparators.find((at - 1)->text[0]) != std::wstring_view::npos) return at;
  return end;
}

}  // namespace

Glyphs glyphsOf(std::string_view text, Charset charset) {
  Glyphs glyphs;
  while (!text.empty()) {
    const char32_t code = takeCodePoint(text);
    charset == Charset::ascii ? addAscii(glyphs, code) : addUnicode(glyphs, code);
  }
  return glyphs;
}

int columnsOf(const Glyphs& glyphs) {
  int columns = 0;
  for (const Glyph& glyph : glyphs) columns += glyph.columns;
  return columns;
}

std::vector<Glyphs> wrapped(const Glyphs& glyphs, int columns) {
  std::vector<Glyphs> lines;
  Iterator first = glyphs.begin();
  do {
    Iterator end = endOfLine(first, glyphs.end(), columns);
    if (end != glyphs.end()) end = behindSeparator(first, end);
    lines.emplace_back(first, end);
    first = end;
  } while (first != glyphs.end());
  return lines;
}

Glyphs shortened(const Glyphs& glyphs, int columns, Charset charset) {
  if (columnsOf(glyphs) <= columns || columns < 1) return glyphs;
  Glyphs result(glyphs.begin(), endOfLine(glyphs.begin(), glyphs.end(), columns - 1));
  result.push_back(glyphsOf(kEllipsis, charset)[0]);
  return result;
}

Glyphs shortenedAtStart(const Glyphs& glyphs, int columns, Charset charset) {
  int over = columnsOf(glyphs) - columns;
  if (over <= 0 || columns < 1) return glyphs;
  auto first = glyphs.begin();
  for (++over; over > 0; ++first) over -= first->columns;
  Glyphs result = glyphsOf(kEllipsis, charset);
  result.insert(result.end(), first, glyphs.end());
  return result;
}

std::string textOf(const Glyph& glyph) {
  std::string text;
  for (const wchar_t* c = glyph.text.data(); *c != L'\0'; ++c)
    append(text, static_cast<char32_t>(*c));
  return text;
}

std::string textOf(const Glyphs& glyphs) {
  std::string text;
  for (const Glyph& glyph : glyphs) text += textOf(glyph);
  return text;
}

}  // namespace quorin::terminal
