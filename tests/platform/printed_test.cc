#include <limits>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(Printed, ShowsEachKindOfValue) {
  const std::pair<Value, const char*> rows[] = {
      {Value(), "null"},
      {Value(true), "1"},
      {Value(false), "0"},
      {Value(-1), "-1"},
      {Value(UINT32_MAX), "4294967295"},
      {Value(INT64_MIN), "-9223372036854775808"},
      {Value(UINT64_MAX), "18446744073709551615"},
      {Value(std::string("a [b], c: d")), "a [b], c: d"},
      {Value(std::string()), ""},
      {Value(test::data("00 0A ff")), "<000aff>"},
      {Value(test::data("")), "<>"},
      {Value(List()), "[]"},
      {Value(List{Value(1), Value(std::string("x")), Value(List{Value(2)})}), "[1, x, [2]]"},
      {Value(Dictionary()), "[:]"},
      {Value(Dictionary{{"a", Value(1)}, {"b", Value(Dictionary{{"c", Value(List())}})}}),
       "[a: 1, b: [c: []]]"},
  };
  for (const auto& [value, text] : rows) EXPECT_EQ(printed(value), text);
}

TEST(Printed, ShowsFloatingPointNumbersAsTheShortestTextThatReadsBackWithADecimal) {
  const std::pair<float, const char*> rows[] = {
      {0.0F, "0.0"},
      {10.0F, "10.0"},
      {-10.5F, "-10.5"},
      {1.4F, "1.4"},
      {0.1F, "0.1"},
      {-12.75F, "-12.75"},
      {-0.07F, "-0.07"},
      {1e10F, "10000000000.0"},
      {16777216.0F, "16777216.0"},
  };
  for (const auto& [value, text] : rows) {
    EXPECT_EQ(printed(Value(value)), text);
    EXPECT_EQ(std::stof(printed(Value(value))), value);
  }
  EXPECT_EQ(printed(Value(0.1)), "0.1");
  EXPECT_EQ(printed(Value(1e300)).substr(301), ".0");
  EXPECT_EQ(printed(Value(std::numeric_limits<double>::infinity())), "inf");
}

TEST(Printed, ShowsTheReplacementCharacterForEachMaximalPartThatIsNotUtf8) {
  const std::pair<std::string, const char*> rows[] = {
      {"plain", "plain"},
      {"gr\xc3\xbc\xc3\x9f", "gr\xc3\xbc\xc3\x9f"},
      {"\xe2\x82\xac", "\xe2\x82\xac"},
      {"\xf0\x9f\x93\xa1", "\xf0\x9f\x93\xa1"},
      {"a\xff"
       "b",
       "a\xef\xbf\xbd"
       "b"},
      {"\xe2\x82", "\xef\xbf\xbd"},                              // cut short
      {"\xe2\x82x", "\xef\xbf\xbdx"},                            // cut short by a letter
      {"\xc0\xaf", "\xef\xbf\xbd\xef\xbf\xbd"},                  // over-long
      {"\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},  // a surrogate
      {"\xf4\x90\x80\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},  // past the last
      {"\x80", "\xef\xbf\xbd"},
      {std::string("a\0b", 3), nullptr},
  };
  for (const auto& [text, shownText] : rows)
    EXPECT_EQ(printed(Value(text)), shownText ? std::string(shownText) : text);
}

}  // namespace
}  // namespace quorin::test
