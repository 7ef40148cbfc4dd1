#include "basebandd/modem/bands.h"

#include <cmath>
#include <map>
#include <set>

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
    const auto uplink = eutraUplinkOf(earfcn);
    const std::string up = uplink ? told(kEarfcnUplink, *uplink) : "";
    ASSERT_EQ(up.empty() ? bandIn(text) : bandIn(up), bandIn(text)) << earfcn;
  }
  EXPECT_EQ(compared, 10360U - 510 + 20740 + 3400) << "their numbers without the gaps";
}

// TS 36.101 V18.7.0: the frequencies in MHz of clause 5.5, table 5.5-1, and the offsets of clause
// 5.7.3, table 5.7.3-1, N = N_Offs + 10 (F - F_low). TDD bands have one for both ways.
struct OperatingBand {
  std::uint32_t band;
  std::uint32_t offset;
  double low, high;
  std::uint32_t uplinkOffset = 0;
  double uplinkLow = 0, uplinkHigh = 0;
};
constexpr OperatingBand kOperatingBands[] = {
    {1, 0, 2110, 2170, 18000, 1920, 1980},
    {2, 600, 1930, 1990, 18600, 1850, 1910},
    {3, 1200, 1805, 1880, 19200, 1710, 1785},
    {4, 1950, 2110, 2155, 19950, 1710, 1755},
    {5, 2400, 869, 894, 20400, 824, 849},
    {6, 2650, 875, 885, 20650, 830, 840},
    {7, 2750, 2620, 2690, 20750, 2500, 2570},
    {8, 3450, 925, 960, 21450, 880, 915},
    {9, 3800, 1844.9, 1879.9, 21800, 1749.9, 1784.9},
    {10, 4150, 2110, 2170, 22150, 1710, 1770},
    {11, 4750, 1475.9, 1495.9, 22750, 1427.9, 1447.9},
    {12, 5010, 729, 746, 23010, 699, 716},
    {13, 5180, 746, 756, 23180, 777, 787},
    {14, 5280, 758, 768, 23280, 788, 798},
    {17, 5730, 734, 746, 23730, 704, 716},
    {18, 5850, 860, 875, 23850, 815, 830},
    {19, 6000, 875, 890, 24000, 830, 845},
    {20, 6150, 791, 821, 24150, 832, 862},
    {21, 6450, 1495.9, 1510.9, 24450, 1447.9, 1462.9},
    {22, 6600, 3510, 3590, 24600, 3410, 3490},
    {23, 7500, 2180, 2200, 25500, 2000, 2020},
    {24, 7700, 1525, 1559, 25700, 1626.5, 1660.5},
    {25, 8040, 1930, 1995, 26040, 1850, 1915},
    {26, 8690, 859, 894, 26690, 814, 849},
    {27, 9040, 852, 869, 27040, 807, 824},
    {28, 9210, 758, 803, 27210, 703, 748},
    {29, 9660, 717, 728},
    {30, 9770, 2350, 2360, 27660, 2305, 2315},
    {31, 9870, 462.5, 467.5, 27760, 452.5, 457.5},
    {32, 9920, 1452, 1496},
    {33, 36000, 1900, 1920, 36000, 1900, 1920},
    {34, 36200, 2010, 2025, 36200, 2010, 2025},
    {35, 36350, 1850, 1910, 36350, 1850, 1910},
    {36, 36950, 1930, 1990, 36950, 1930, 1990},
    {37, 37550, 1910, 1930, 37550, 1910, 1930},
    {38, 37750, 2570, 2620, 37750, 2570, 2620},
    {39, 38250, 1880, 1920, 38250, 1880, 1920},
    {40, 38650, 2300, 2400, 38650, 2300, 2400},
    {41, 39650, 2496, 2690, 39650, 2496, 2690},
    {42, 41590, 3400, 3600, 41590, 3400, 3600},
    {43, 43590, 3600, 3800, 43590, 3600, 3800},
    {44, 45590, 703, 803, 45590, 703, 803},
    {45, 46590, 1447, 1467, 46590, 1447, 1467},
    {46, 46790, 5150, 5925, 46790, 5150, 5925},
    {47, 54540, 5855, 5925, 54540, 5855, 5925},
    {48, 55240, 3550, 3700, 55240, 3550, 3700},
    {49, 56740, 3550, 3700, 56740, 3550, 3700},
    {50, 58240, 1432, 1517, 58240, 1432, 1517},
    {51, 59090, 1427, 1432, 59090, 1427, 1432},
    {52, 59140, 3300, 3400, 59140, 3300, 3400},
    {53, 60140, 2483.5, 2495, 60140, 2483.5, 2495},
    {54, 60255, 1670, 1675, 60255, 1670, 1675},
    {65, 65536, 2110, 2200, 131072, 1920, 2010},
    {66, 66436, 2110, 2200, 131972, 1710, 1780},
    {67, 67336, 738, 758},
    {68, 67536, 753, 783, 132672, 698, 728},
    {69, 67836, 2570, 2620},
    {70, 68336, 1995, 2020, 132972, 1695, 1710},
    {71, 68586, 617, 652, 133122, 663, 698},
    {72, 68936, 461, 466, 133472, 451, 456},
    {73, 68986, 460, 465, 133522, 450, 455},
    {74, 69036, 1475, 1518, 133572, 1427, 1470},
    {75, 69466, 1432, 1517},
    {76, 70316, 1427, 1432},
    {85, 70366, 728, 746, 134002, 698, 716},
    {87, 70546, 420, 425, 134182, 410, 415},
    {88, 70596, 422, 427, 134232, 412, 417},
    {103, 70646, 757, 758, 134282, 787, 788},
    {106, 70656, 935, 940, 134292, 896, 901},
};

// The last of so many channels of 100 kHz; 0: there are none.
std::uint32_t lastChannel(std::uint32_t offset, double low, double high) {
  const auto channels = static_cast<std::uint32_t>(std::lround(10 * (high - low)));
  return channels == 0 ? 0 : offset + channels - 1;
}

TEST(EutraBands, AreThoseOfTheStandard) {
  ASSERT_EQ(eutraBands().size(), std::size(kOperatingBands));
  for (std::size_t i = 0; i < eutraBands().size(); ++i) {
    const EutraBand& row = eutraBands()[i];
    const OperatingBand& band = kOperatingBands[i];
    EXPECT_EQ(row.band, band.band);
    EXPECT_EQ(row.first, band.offset) << band.band;
    EXPECT_EQ(row.last, lastChannel(band.offset, band.low, band.high)) << band.band;
    EXPECT_EQ(row.uplinkFirst, band.uplinkOffset) << band.band;
    EXPECT_EQ(row.uplinkLast, lastChannel(band.uplinkOffset, band.uplinkLow, band.uplinkHigh))
        << band.band;
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
      {60304, 60304},
      {60305, std::nullopt},
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
      {70646, 134282},  // bands 103, 106
      {70705, 134341},
      {70706, std::nullopt},
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

// TS 25.101 V18.0.0, downlink: the offset and frequencies in MHz of clause 5.4.3, table 5.1, and
// those of table 5.1A, N = 5 (F - F_Offset).
struct UtraBand {
  std::uint32_t band;
  double offset, low, high;
  double additionalOffset = 0;
  std::vector<double> additional{};
};

TEST(UtraBands, AreThoseOfTheStandard) {
  const UtraBand bands[] = {
      {1, 0, 2112.4, 2167.6},
      {2,
       0,
       1932.4,
       1987.6,
       1850.1,
       {1932.5, 1937.5, 1942.5, 1947.5, 1952.5, 1957.5, 1962.5, 1967.5, 1972.5, 1977.5, 1982.5,
        1987.5}},
      {3, 1575, 1807.4, 1877.6},
      {4,
       1805,
       2112.4,
       2152.6,
       1735.1,
       {2112.5, 2117.5, 2122.5, 2127.5, 2132.5, 2137.5, 2142.5, 2147.5, 2152.5}},
      {5, 0, 871.4, 891.6, 670.1, {871.5, 872.5, 876.5, 877.5, 882.5, 887.5}},
      {6, 0, 877.4, 882.6, 670.1, {877.5, 882.5}},
      {7,
       2175,
       2622.4,
       2687.6,
       2105.1,
       {2622.5, 2627.5, 2632.5, 2637.5, 2642.5, 2647.5, 2652.5, 2657.5, 2662.5, 2667.5, 2672.5,
        2677.5, 2682.5, 2687.5}},
      {8, 340, 927.4, 957.6},
      {9, 0, 1847.4, 1877.4},
      {10,
       1490,
       2112.4,
       2167.6,
       1430.1,
       {2112.5, 2117.5, 2122.5, 2127.5, 2132.5, 2137.5, 2142.5, 2147.5, 2152.5, 2157.5, 2162.5,
        2167.5}},
      {11, 736, 1478.4, 1493.4},
      {12, -37, 731.4, 743.6, -54.9, {731.5, 736.5, 737.5, 742.5, 743.5}},
      {13, -55, 748.4, 753.6, -64.9, {748.5, 753.5}},
      {14, -63, 760.4, 765.6, -72.9, {760.5, 765.5}},
      {19, 735, 877.4, 887.6, 720.1, {877.5, 882.5, 887.5}},
      {20, -109, 793.4, 818.6},
      {21, 1326, 1498.4, 1508.4},
      {22, 2580, 3512.4, 3587.6},
      {25,
       910,
       1932.4,
       1992.6,
       674.1,
       {1932.5, 1937.5, 1942.5, 1947.5, 1952.5, 1957.5, 1962.5, 1967.5, 1972.5, 1977.5, 1982.5,
        1987.5, 1992.5}},
      {26,
       -291,
       861.4,
       891.6,
       -325.9,
       {861.5, 866.5, 871.5, 872.5, 876.5, 877.5, 881.5, 882.5, 886.5, 887.5, 891.5}},
      {32,
       131,
       1454.4,
       1493.6,
       87.1,
       {1454.5, 1459.5, 1464.5, 1469.5, 1474.5, 1479.5, 1484.5, 1489.5}},
  };
  using Channels = std::map<std::uint32_t, std::set<std::uint32_t>>;  // by band
  const auto number = [](double megahertz, double offset) {
    return static_cast<std::uint32_t>(std::lround(5 * (megahertz - offset)));
  };
  Channels theirs;
  for (const UtraBand& band : bands) {
    for (auto n = number(band.low, band.offset); n <= number(band.high, band.offset); ++n)
      theirs[band.band].insert(n);
    for (const double megahertz : band.additional)
      theirs[band.band].insert(number(megahertz, band.additionalOffset));
  }
  Channels ours;
  for (const ChannelBand& row : utraBands())
    for (std::uint32_t n = row.first; n <= row.last; n += row.step) ours[row.band].insert(n);
  EXPECT_EQ(ours, theirs);
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

// TS 45.005 clause 2: P-GSM 1 to 124, E-GSM 0 to 124 and 975 to 1023, R-GSM 955 to 1023, ER-GSM 940
// to 1023. The numbers of T-GSM 810 and GSM 710 are dynamic: the cell's own broadcast tells them.
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
