#include "basebandd/modem/bands.h"

#include "messages/shared/names.h"
#include "tests/support/rig.h"
#include "viewer/readings.h"

namespace quorin::test {
namespace {

using namespace modem;

/// "2110 MHz, band 1", as the pages tell a channel; empty: they know none.
std::string told(const quorin::Reading& reading, std::uint32_t channel) {
  const auto meaning = meaningOf(reading, std::to_string(channel));
  return meaning ? meaning->text : "";
}

double megahertz(const std::string& text) { return std::stod(text); }

std::string bandIn(const std::string& text) { return text.substr(text.find(", ") + 2); }

TEST(EutraBands, HaveTheirEdges) {
  for (const EutraBand& row : eutraBands()) {
    EXPECT_EQ(eutraBandOf(row.first), row.band);
    EXPECT_EQ(eutraBandOf(row.last), row.band);
    EXPECT_NE(eutraBandOf(row.first - 1), row.band);
    EXPECT_NE(eutraBandOf(row.last + 1), row.band);
  }
}

TEST(EutraBands, AreThoseThatThePagesTell) {
  std::size_t compared = 0;
  for (std::uint32_t earfcn = 0; earfcn <= 262143; ++earfcn) {
    const std::string text = told(kEarfcnDownlink, earfcn);
    if (text.empty()) continue;
    ++compared;
    ASSERT_EQ("band " + std::to_string(eutraBandOf(earfcn).value_or(0)), bandIn(text)) << earfcn;
  }
  EXPECT_EQ(compared, 10360U - 510 + 20740 + 3400) << "their numbers without the gaps";
}

// TX-RX separations of TS 36.101 table 5.7.4-1, in MHz: uplink below downlink is positive.
struct Separation {
  std::uint32_t band;
  double megahertz;
};
constexpr Separation kSeparations[] = {
    {1, 190},     {2, 80},   {3, 95},   {4, 400},  {5, 45},  {6, 45},   {7, 120},
    {8, 45},      {9, 95},   {10, 400}, {11, 48},  {12, 30}, {13, -31}, {14, -30},
    {17, 30},     {18, 45},  {19, 45},  {20, -41}, {21, 48}, {22, 100}, {23, 180},
    {24, -101.5}, {25, 80},  {26, 45},  {27, 45},  {28, 55}, {30, 45},  {31, 10},
    {65, 190},    {66, 400}, {68, 55},  {70, 300}, {71, -46}};

TEST(EutraUplinks, LieTheBandsSeparationAway) {
  for (const Separation& row : kSeparations)
    for (std::uint32_t earfcn = 0; earfcn <= 70000; ++earfcn) {
      if (eutraBandOf(earfcn) != row.band) continue;
      const auto uplink = eutraUplinkOf(earfcn);
      if (!uplink) continue;
      const std::string down = told(kEarfcnDownlink, earfcn);
      const std::string up = told(kEarfcnUplink, *uplink);
      ASSERT_EQ(bandIn(up), bandIn(down)) << earfcn;
      ASSERT_NEAR(megahertz(down) - megahertz(up), row.megahertz, 0.01) << earfcn;
    }
}

struct Uplink {
  std::uint32_t downlink;
  std::optional<std::uint32_t> uplink;
};

TEST(EutraUplinks, StandAtTheEdges) {
  const Uplink rows[] = {
      {0, 18000},
      {599, 18599},
      {9659, 27659},         // the last one 18000 away
      {9660, std::nullopt},  // band 29: supplemental downlink
      {9769, std::nullopt},
      {9770, 27660},  // band 30: 17890 away
      {9919, 27809},
      {9920, std::nullopt},  // band 32: supplemental downlink
      {10359, std::nullopt},
      {10360, std::nullopt},  // no band
      {36000, 36000},         // TDD: one number both ways
      {60254, 60254},
      {65536, 131072},
      {66435, 131971},
      {66436, 131972},  // band 66: 90 MHz down, 70 MHz up
      {67135, 132671},
      {67136, std::nullopt},
      {67335, std::nullopt},
      {67336, std::nullopt},  // band 67
      {67536, 132672},
      {67835, 132971},
      {68335, std::nullopt},  // band 69
      {68336, 132972},        // band 70: 25 MHz down, 15 MHz up
      {68485, 133121},
      {68486, std::nullopt},
      {68585, std::nullopt},
      {68586, 133122},
      {68935, 133471},
      {68936, 133472},  // bands 72, 73, 74
      {68986, 133522},
      {69036, 133572},
      {69465, 134001},
      {69466, std::nullopt},  // bands 75, 76
      {70365, std::nullopt},
      {70366, 134002},  // band 85
      {70545, 134181},
      {70546, 134182},  // bands 87, 88
      {70645, 134281},
      {70646, std::nullopt},
      {255144, std::nullopt},  // bands 252, 255
      {262143, std::nullopt},
  };
  for (const Uplink& row : rows) EXPECT_EQ(eutraUplinkOf(row.downlink), row.uplink) << row.downlink;
}

/// Numbers that more than one row of the bands has.
bool isShared(std::span<const ChannelBand> bands, std::uint32_t channel) {
  return std::ranges::count_if(bands, [&](const ChannelBand& row) {
           return row.first <= channel && channel <= row.last &&
                  (channel - row.first) % row.step == 0;
         }) > 1;
}

TEST(UtraBands, HaveTheirEdges) {
  for (const ChannelBand& row : utraBands())
    for (const std::uint32_t edge : {row.first, row.last}) {
      if (isShared(utraBands(), edge)) {
        EXPECT_EQ(utraBandOf(edge), std::nullopt) << edge;
        EXPECT_EQ(utraSysBandOf(edge), std::nullopt) << edge;
        continue;
      }
      EXPECT_EQ(utraBandOf(edge), row.band) << edge;
      const std::optional<std::int32_t> name =
          row.sysBand == kUnnamed ? std::nullopt : std::optional(row.sysBand);
      EXPECT_EQ(utraSysBandOf(edge), name) << edge;
    }
}

TEST(UtraBands, AreThoseThatThePagesTell) {
  constexpr const char* kRoman[] = {"",     "I",  "II", "III", "IV",  "V",    "VI", "VII",
                                    "VIII", "IX", "X",  "XI",  "XII", "XIII", "XIV"};
  std::size_t compared = 0;
  for (std::uint32_t uarfcn = 0; uarfcn <= 16383; ++uarfcn) {
    const std::string text = told(kUarfcnDownlink, uarfcn);
    const auto band = utraBandOf(uarfcn);
    if (text.empty() || !band || *band >= std::size(kRoman)) continue;
    ++compared;
    ASSERT_EQ("band " + std::string(kRoman[*band]), bandIn(text)) << uarfcn;
  }
  EXPECT_GT(compared, 2000U);
}

TEST(UtraBands, AreAbsentWhereSeveralHaveTheNumber) {
  EXPECT_EQ(utraBandOf(4386), 5U);
  for (const std::uint32_t shared : {4387U, 4400U, 4413U, 1037U, 1062U})
    EXPECT_EQ(utraBandOf(shared), std::nullopt) << "bands V and VI, " << shared;
  EXPECT_EQ(utraBandOf(4414), 5U);
  EXPECT_EQ(utraBandOf(1012), 5U) << "an additional number of band V";
  EXPECT_EQ(utraBandOf(1013), std::nullopt);
}

TEST(GsmBands, HaveTheirEdges) {
  const auto named = [](std::uint32_t arfcn) {
    const auto band = gsmSysBandOf(arfcn);
    return std::string(band ? EnumTable(names::SYS_BAND).nameOf(*band) : "");
  };
  struct Row {
    std::uint32_t first, last;
    const char* name;
  };
  const Row rows[] = {
      {0, 0, "SYS_BAND_GSM_EGSM_900"},
      {1, 124, "SYS_BAND_GSM_PGSM_900"},
      {125, 127, ""},
      {128, 251, "SYS_BAND_GSM_850"},
      {252, 258, ""},
      {259, 293, "SYS_BAND_GSM_450"},
      {294, 305, ""},
      {306, 340, "SYS_BAND_GSM_480"},
      {341, 437, ""},
      {438, 511, "SYS_BAND_GSM_750"},
      {512, 810, ""},  // DCS 1800 and PCS 1900
      {811, 885, "SYS_BAND_GSM_DCS_1800"},
      {886, 954, ""},
      {955, 974, "SYS_BAND_GSM_RGSM_900"},
      {975, 1023, "SYS_BAND_GSM_EGSM_900"},
      {1024, 2000, ""},
  };
  for (const Row& row : rows)
    for (std::uint32_t arfcn = row.first; arfcn <= row.last; ++arfcn)
      ASSERT_EQ(named(arfcn), row.name) << arfcn;
}

}  // namespace
}  // namespace quorin::test
