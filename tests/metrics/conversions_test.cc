#include "metrics/conversions.h"

#include <cstdlib>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

const BandwidthTable kBandwidths = bandwidthTable();

TEST(TimeStampText, IsTheInstantInTheZoneWithItsAbbreviation) {
  constexpr struct {
    const char* zone;
    double milliseconds;
    const char* text;
  } kRows[] = {
      {"GMT0", 0, "1970-01-01 00:00:00 GMT"},
      {"UTC0", 0, "1970-01-01 00:00:00 UTC"},
      {"UTC0", 999, "1970-01-01 00:00:00 UTC"},
      {"UTC0", 1000, "1970-01-01 00:00:01 UTC"},
      {"UTC0", 1700000000999, "2023-11-14 22:13:20 UTC"},
      {"UTC0", 1709164800000, "2024-02-29 00:00:00 UTC"},
      {"UTC0", -1, "1969-12-31 23:59:59 UTC"},
      {"UTC0", 253402300799000, "9999-12-31 23:59:59 UTC"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", 1700000000000, "2023-11-14 23:13:20 CET"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", 1690000000000, "2023-07-22 06:26:40 CEST"},
      {"IST-5:30", 0, "1970-01-01 05:30:00 IST"},
      {"EST5EDT,M3.2.0,M11.1.0", 0, "1969-12-31 19:00:00 EST"},
  };
  for (const auto& row : kRows) {
    setenv("TZ", row.zone, 1);
    EXPECT_EQ(timeStampText(row.milliseconds), row.text) << row.zone;
  }
}

TEST(TimeStampText, HoldsTheLargestNumberThatAMessageCarries) {
  EXPECT_EQ(timeStampText(18446744073709551615.0), "584556019-04-03 14:25:52 UTC");
}

TEST(ConvertTimeStamp, ReplacesANumberInItsPlaceAndNothingElse) {
  Dictionary store{{"a", Value(1)}, {"timestamp", Value(std::uint64_t{0})}, {"b", Value(2)}};
  convertTimeStamp(store);
  EXPECT_EQ(printed(store), "[a: 1, timestamp: 1970-01-01 00:00:00 UTC, b: 2]");
  convertTimeStamp(store);
  EXPECT_EQ(printed(store), "[a: 1, timestamp: 1970-01-01 00:00:00 UTC, b: 2]");
  Dictionary without{{"a", Value(1)}};
  convertTimeStamp(without);
  EXPECT_EQ(printed(without), "[a: 1]");
}

TEST(HalveBandwidths, ReadsThemSignedAndDropsTheRestTowardsZero) {
  constexpr std::pair<std::uint32_t, const char*> kRows[] = {
      {0, "0"},
      {1, "0"},
      {2, "1"},
      {5, "2"},
      {40, "20"},
      {0x7fffffff, "1073741823"},
      {0x80000000, "-1073741824"},
      {0xfffffffb, "-2"},
      {0xffffffff, "0"},
  };
  for (const auto& [delivered, halved] : kRows) {
    Dictionary store{{"dl_bw", Value(delivered)}, {"x_bw", Value(7)}, {"ul_bw", Value(delivered)}};
    halveBandwidths(store);
    EXPECT_EQ(printed(store),
              "[dl_bw: " + std::string(halved) + ", x_bw: 7, ul_bw: " + halved + "]");
  }
  Dictionary without{{"x_bw", Value(7)}};
  halveBandwidths(without);
  EXPECT_EQ(printed(without), "[x_bw: 7]");
}

TEST(BandwidthTable, HasSixCodes) {
  EXPECT_EQ(kBandwidths,
            (BandwidthTable{{0, 1.4F}, {1, 3.0F}, {2, 5.0F}, {3, 10.0F}, {4, 15.0F}, {5, 20.0F}}));
}

struct ConversionRow {
  const char* name;
  Conversion conversion;
  Value delivered;
  const char* converted;
};

Value converted(Conversion conversion, Value value) {
  conversion(value, kBandwidths);
  return value;
}

TEST(Conversions, GiveTheirNumbers) {
  const ConversionRow rows[] = {
      {"halfSteps", halfSteps, Value(25), "12.5"},
      {"halfSteps", halfSteps, Value(-3), "-1.5"},
      {"halfSteps", halfSteps, Value(-21), "-10.5"},
      {"halfSteps", halfSteps, Value(20), "10.0"},
      {"halfSteps", halfSteps, Value(0), "0.0"},
      {"halfSteps", halfSteps, Value(std::uint32_t{27}), "13.5"},
      {"halfSteps", halfSteps, Value(std::uint32_t{4294967295U}), "2147483648.0"},
      {"hundredths", hundredths, Value(-1050), "-10.5"},
      {"hundredths", hundredths, Value(-1275), "-12.75"},
      {"hundredths", hundredths, Value(-25), "-0.25"},
      {"hundredths", hundredths, Value(-7), "-0.07"},
      {"hundredths", hundredths, Value(0), "0.0"},
      {"hundredths", hundredths, Value(-1100), "-11.0"},
      {"wholeOfHundredths", wholeOfHundredths, Value(-11250), "-112"},
      {"wholeOfHundredths", wholeOfHundredths, Value(-11299), "-112"},
      {"wholeOfHundredths", wholeOfHundredths, Value(-11300), "-113"},
      {"wholeOfHundredths", wholeOfHundredths, Value(-99), "0"},
      {"wholeOfHundredths", wholeOfHundredths, Value(199), "1"},
      {"megahertz", megahertz, Value(0), "1.4"},
      {"megahertz", megahertz, Value(1), "3.0"},
      {"megahertz", megahertz, Value(2), "5.0"},
      {"megahertz", megahertz, Value(3), "10.0"},
      {"megahertz", megahertz, Value(4), "15.0"},
      {"megahertz", megahertz, Value(std::uint32_t{5}), "20.0"},
      {"megahertz", megahertz, Value(6), "6"},
      {"megahertz", megahertz, Value(-1), "-1"},
      {"megahertz", megahertz, Value(std::uint32_t{4294967295U}), "4294967295"},
      {"megahertz", megahertz, Value(std::int64_t{0x100000003}), "4294967299"},
  };
  for (const ConversionRow& row : rows)
    EXPECT_EQ(printed(converted(row.conversion, row.delivered)), row.converted)
        << row.name << " of " << printed(row.delivered);
}

TEST(Conversions, GiveFloatingPointNumbersInThirtyTwoBits) {
  EXPECT_EQ(converted(halfSteps, Value(1)).kind(), Value::Kind::float32);
  EXPECT_EQ(converted(hundredths, Value(1)).kind(), Value::Kind::float32);
  EXPECT_EQ(converted(megahertz, Value(1)).kind(), Value::Kind::float32);
  EXPECT_TRUE(converted(wholeOfHundredths, Value(1)).isInteger());
}

TEST(Conversions, GiveBackWhatIsNoInteger) {
  for (const Conversion conversion : {halfSteps, hundredths, wholeOfHundredths, megahertz})
    for (const Value& value : {Value(std::string("x")), Value(true), Value(1.5F), Value()})
      EXPECT_EQ(converted(conversion, value), value);
}

TEST(ImsiDigits, ReadsAMobileIdentityOfThatType) {
  constexpr std::pair<const char*, const char*> kRows[] = {
      {"29 26 10 10 32 54 76 98", "262010123456789"},  // 15 digits: odd
      {"21 26 10 10 32 54 76 f8", "26201012345678"},   // 14 digits: even, filled
      {"09", "0"},
      {"01 f1", "01"},
      {"39 00 00", "30000"},
  };
  for (const auto& [octets, digits] : kRows)
    EXPECT_EQ(printed(imsiDigits(Value(test::data(octets)))), digits) << octets;
}

TEST(ImsiDigits, GivesBackBytesThatAreNoSuchIdentity) {
  constexpr const char* kRows[] = {
      "",                            // nothing
      "2a 26 10 10 32 54 76 98",     // type 2, an IMEI
      "2b 26 10 10 32 54 76 98",     // type 3, an IMEISV
      "2c 26 10 10",                 // type 4, a TMSI
      "28 26 10 10 32 54 76 98",     // no identity
      "a9 26 10 10 32 54 76 98",     // first digit beyond 9
      "29 2a 10 10 32 54 76 98",     // low nibble beyond 9
      "29 a2 10 10 32 54 76 98",     // high nibble beyond 9
      "29 26 10 10 32 54 76 f8",     // odd, yet filled
      "21 26 10 10 32 54 76 98",     // even, yet not filled
      "21",                          // even, and only one digit
      "29 26 10 10 32 54 76 98 10",  // 17 digits
      "21 26 10 10 32 54 76 98 f1",  // 16 digits
  };
  for (const char* octets : kRows) {
    const Value identity(test::data(octets));
    EXPECT_EQ(imsiDigits(identity), identity) << octets;
  }
  EXPECT_EQ(imsiDigits(Value(std::string("262"))), Value(std::string("262")));
}

}  // namespace
}  // namespace quorin::test
