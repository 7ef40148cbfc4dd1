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

TEST(Printed, ShowsIntegersOfEveryLength) {
  const auto expect = [](auto number) {
    EXPECT_EQ(printed(Value(number)), std::to_string(number));
  };
  for (std::uint64_t power = 1;; power *= 10) {
    for (const std::uint64_t number : {power - 1, power, power + 1, power * 9 + power / 7}) {
      expect(number);
      expect(static_cast<std::int64_t>(number));
      expect(-static_cast<std::int64_t>(number));
      expect(static_cast<std::int32_t>(number));
      expect(static_cast<std::uint32_t>(number));
    }
    if (power == 10'000'000'000'000'000'000U) break;
  }
  for (int number = -2000; number < 2000; ++number) expect(number);
}

TEST(Printed, ShowsBytesOfEveryLength) {
  std::vector<std::uint8_t> bytes;
  for (unsigned i = 0; i < 300; ++i) {
    EXPECT_EQ(printed(Value(make<Data>(Bytes(bytes)))), "<" + hexText(bytes) + ">");
    bytes.push_back(static_cast<std::uint8_t>(i * 7));
  }
}

template <FixedText... texts>
void expectPadded() {
  static constexpr Literal kTexts[] = {kKey<texts>...};
  DictionaryMaker made{Keys(kTexts)};
  std::string expected;
  for (std::size_t i = 0; i < std::size(kTexts); ++i) {
    made.put(i, Value(kTexts[i]));
    expected +=
        (i == 0 ? "" : ", ") + std::string(kTexts[i].text) + ": " + std::string(kTexts[i].text);
  }
  EXPECT_EQ(printed(made.made()), "[" + expected + "]");
}

TEST(Printed, ShowsKeysAndNamesOfEveryLength) {
  expectPadded<"a", "of_fifteen_char", "of_sixteen_chars", "of_twenty_nine_characters_29c",
               "of_thirty_characters_______30c", "of_thirty_one_characters____31c",
               "of_thirty_two_characters_____32c", "of_thirty_three_characters____33c",
               "of_sixty_two_characters_____________________________________62">();
}

TEST(Printed, StandsBehindALineUntilItPrintsAgain) {
  const Dictionary dictionary{{"a", Value(1)}, {"b", Value(std::string(2'000, 'x'))}};
  for (const std::size_t length : {0U, 1U, 15U, 16U, 17U, 32U, 33U, 200U}) {
    const std::string before(length, '-');
    const std::string expected = before + " " + printed(dictionary);
    EXPECT_EQ(printedBehind(before, dictionary), expected);
  }
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
