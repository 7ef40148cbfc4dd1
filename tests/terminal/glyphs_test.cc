#include "platform/terminal/glyphs.h"

#include <gmock/gmock.h>

#include <cwchar>

#include "platform/terminal/Canvas.h"
#include "platform/terminal/sparkline.h"
#include "tests/terminal/locale.h"

namespace quorin::terminal::test {
namespace {

using ::testing::ElementsAre;

std::string shown(std::string_view text, Charset charset = Charset::unicode) {
  return textOf(glyphsOf(text, charset));
}

std::vector<std::string> lines(std::string_view text, int columns) {
  std::vector<std::string> lines;
  for (const Glyphs& line : wrapped(glyphsOf(text, Charset::unicode), columns))
    lines.push_back(textOf(line));
  return lines;
}

/// The code point's bytes; at least U+0800, below the surrogates or above them.
std::string utf8(char32_t code) {
  const auto byte = [](char32_t value) { return static_cast<char>(value); };
  return {byte(0xe0 | code >> 12), byte(0x80 | (code >> 6 & 0x3f)), byte(0x80 | (code & 0x3f))};
}

TEST(Glyphs, NeverSteerATerminal) {
  const Utf8Locale locale;
  struct {
    std::string_view text;
    std::string_view unicode;
    std::string_view ascii;
  } const rows[] = {
      {"-97 dBm", "-97 dBm", "-97 dBm"},
      {"a\x1b[2J\tb\x7f", "a\uFFFD[2J\uFFFDb\uFFFD", "a?[2J?b?"},
      {"\u009b2J", "\uFFFD2J", "?2J"},
      {"a\u202eb\u200b", "a\uFFFDb\uFFFD", "a?b?"},
      {"ä › 漢", "ä › 漢", "? > ?"},
      {"-97 ≤ RSRP", "-97 ≤ RSRP", "-97 <= RSRP"},
      {"x\xff\xc3", "x\uFFFD\uFFFD", "x??"},
      {"\xc0\x80\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD", "???"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(shown(row.text), row.unicode);
    EXPECT_EQ(shown(row.text, Charset::ascii), row.ascii);
  }
}

TEST(Glyphs, LetNothingInvisibleThrough) {
  const Utf8Locale locale;
  struct {
    char32_t first;
    char32_t last;
  } const ranges[] = {
      {0x200b, 0x200f}, {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfe00, 0xfe0f}, {0xfeff, 0xfeff}};
  for (const auto& range : ranges) {
    for (char32_t code = range.first; code <= range.last; ++code)
      EXPECT_EQ(shown("a" + utf8(code)), "a\uFFFD") << std::hex << static_cast<unsigned>(code);
    for (const char32_t code : {range.first - 1, range.last + 1})
      if (wcwidth(static_cast<wchar_t>(code)) >= 0) {
        EXPECT_EQ(shown("a" + utf8(code)), "a" + utf8(code)) << static_cast<unsigned>(code);
      }
  }
  EXPECT_EQ(shown("a漢\uFFFD"), "a漢\uFFFD") << "and everything else";
}

TEST(Glyphs, OfOursHaveALikenessInAscii) {
  EXPECT_EQ(shown("›│─…•↑↓×←→·≤≥−–µ°", Charset::ascii), ">|-~*^vx<>.<=>=--uo");
  std::string printable;
  for (char c = ' '; c <= '~'; ++c) printable += c;
  EXPECT_EQ(shown(printable, Charset::ascii), printable);
}

TEST(Glyphs, TakeTheColumnsOfTheTerminal) {
  const Utf8Locale locale;
  EXPECT_EQ(columnsOf(glyphsOf("ab", Charset::unicode)), 2);
  EXPECT_EQ(columnsOf(glyphsOf("漢字", Charset::unicode)), 4);
  EXPECT_EQ(columnsOf(glyphsOf("e\u0301", Charset::unicode)), 1) << "a letter and its accent";
  EXPECT_EQ(columnsOf(glyphsOf("≤", Charset::ascii)), 2);
}

TEST(Glyphs, WrapBehindASeparatorAndLeaveNothingOut) {
  const Utf8Locale locale;
  EXPECT_THAT(lines("", 10), ElementsAre(""));
  EXPECT_THAT(lines("abcdefghij", 10), ElementsAre("abcdefghij"));
  EXPECT_THAT(lines("abcdefghijk", 10), ElementsAre("abcdefghij", "k"));
  EXPECT_THAT(lines("KREG_STATUS_NORMAL", 14), ElementsAre("KREG_STATUS_", "NORMAL"));
  EXPECT_THAT(lines("a bcdefghijklmn", 10), ElementsAre("a bcdefghi", "jklmn"));
  EXPECT_THAT(lines("漢字漢字", 3), ElementsAre("漢", "字", "漢", "字"));
  EXPECT_THAT(lines("漢", 1), ElementsAre("漢")) << "never without end";
}

TEST(Glyphs, AreShortenedWithAnEllipsis) {
  const Utf8Locale locale;
  const Glyphs text = glyphsOf("LTE › RRC State", Charset::unicode);
  EXPECT_EQ(textOf(shortened(text, 15, Charset::unicode)), "LTE › RRC State");
  EXPECT_EQ(textOf(shortened(text, 8, Charset::unicode)), "LTE › R…");
  EXPECT_EQ(textOf(shortenedAtStart(text, 8, Charset::unicode)), "…C State");
  EXPECT_EQ(textOf(shortenedAtStart(glyphsOf("漢字漢", Charset::unicode), 4, Charset::unicode)),
            "…漢");
}

TEST(Canvas, ClipsAtItsEdges) {
  const Utf8Locale locale;
  Canvas canvas(2, 4, Charset::unicode);
  EXPECT_EQ(canvas.put(0, 1, 10, "abcdef", Style::plain), 4);
  EXPECT_EQ(canvas.put(1, 1, 4, "漢漢", Style::plain), 3) << "no half of a character";
  canvas.put(2, 0, 4, "x", Style::plain);
  canvas.put(-1, 0, 4, "x", Style::plain);
  EXPECT_EQ(canvas.text(), " abc\n 漢\n");
}

Trend trendOf(const std::vector<double>& values) {
  Trend trend;
  for (double value : values) trend.add({Milliseconds(0), value});
  return trend;
}

TEST(Sparkline, GoesFromTheLowestToTheHighestValue) {
  const Charset unicode = Charset::unicode;
  EXPECT_EQ(textOf(sparkline(trendOf({0, 1, 2, 3, 4, 5, 6, 7}), unicode)), "▁▂▃▄▅▆▇█");
  EXPECT_EQ(textOf(sparkline(trendOf({-97, -97.5}), unicode)), "█▁");
  EXPECT_EQ(textOf(sparkline(trendOf({-1.7e308, 1.7e308, 0}), unicode)), "▁█▅");
  EXPECT_EQ(textOf(sparkline(trendOf({0, 10, 3.5, 3.6, 9.2, 9.3}), unicode)), "▁█▃▄▇█")
      << "the nearest block";
}

TEST(Sparkline, ShowsTheLatestPoints) {
  EXPECT_EQ(textOf(sparkline(trendOf({900, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2}), Charset::unicode)),
            "▁█▁█▁█▁█");
}

TEST(Sparkline, IsEmptyWithoutAnythingToShow) {
  EXPECT_TRUE(sparkline(trendOf({}), Charset::unicode).empty());
  EXPECT_TRUE(sparkline(trendOf({1}), Charset::unicode).empty());
  EXPECT_TRUE(sparkline(trendOf({1, 1, 1}), Charset::unicode).empty());
  EXPECT_TRUE(sparkline(trendOf({0, 5e-324}), Charset::unicode).empty());
  EXPECT_TRUE(sparkline(trendOf({1, 2, 3}), Charset::ascii).empty());
}

}  // namespace
}  // namespace quorin::terminal::test
