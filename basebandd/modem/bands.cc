#include "basebandd/modem/bands.h"

#include "messages/shared/names.h"

namespace quorin::modem {

namespace {

// An uplink that is shorter than its downlink leaves the last downlink channels without one.
constexpr EutraBand kEutraBands[] = {
    {1, 0, 599, 18000, 18599},
    {2, 600, 1199, 18600, 19199},
    {3, 1200, 1949, 19200, 19949},
    {4, 1950, 2399, 19950, 20399},
    {5, 2400, 2649, 20400, 20649},
    {6, 2650, 2749, 20650, 20749},
    {7, 2750, 3449, 20750, 21449},
    {8, 3450, 3799, 21450, 21799},
    {9, 3800, 4149, 21800, 22149},
    {10, 4150, 4749, 22150, 22749},
    {11, 4750, 4949, 22750, 22949},
    {12, 5010, 5179, 23010, 23179},
    {13, 5180, 5279, 23180, 23279},
    {14, 5280, 5379, 23280, 23379},
    {17, 5730, 5849, 23730, 23849},
    {18, 5850, 5999, 23850, 23999},
    {19, 6000, 6149, 24000, 24149},
    {20, 6150, 6449, 24150, 24449},
    {21, 6450, 6599, 24450, 24599},
    {22, 6600, 7399, 24600, 25399},
    {23, 7500, 7699, 25500, 25699},
    {24, 7700, 8039, 25700, 26039},
    {25, 8040, 8689, 26040, 26689},
    {26, 8690, 9039, 26690, 27039},
    {27, 9040, 9209, 27040, 27209},
    {28, 9210, 9659, 27210, 27659},
    {29, 9660, 9769},
    {30, 9770, 9869, 27660, 27759},
    {31, 9870, 9919, 27760, 27809},
    {32, 9920, 10359},
    {33, 36000, 36199, 36000, 36199},
    {34, 36200, 36349, 36200, 36349},
    {35, 36350, 36949, 36350, 36949},
    {36, 36950, 37549, 36950, 37549},
    {37, 37550, 37749, 37550, 37749},
    {38, 37750, 38249, 37750, 38249},
    {39, 38250, 38649, 38250, 38649},
    {40, 38650, 39649, 38650, 39649},
    {41, 39650, 41589, 39650, 41589},
    {42, 41590, 43589, 41590, 43589},
    {43, 43590, 45589, 43590, 45589},
    {44, 45590, 46589, 45590, 46589},
    {45, 46590, 46789, 46590, 46789},
    {46, 46790, 54539, 46790, 54539},
    {47, 54540, 55239, 54540, 55239},
    {48, 55240, 56739, 55240, 56739},
    {49, 56740, 58239, 56740, 58239},
    {50, 58240, 59089, 58240, 59089},
    {51, 59090, 59139, 59090, 59139},
    {52, 59140, 60139, 59140, 60139},
    {53, 60140, 60254, 60140, 60254},
    {54, 60255, 60304, 60255, 60304},
    {65, 65536, 66435, 131072, 131971},
    {66, 66436, 67335, 131972, 132671},
    {67, 67336, 67535},
    {68, 67536, 67835, 132672, 132971},
    {69, 67836, 68335},
    {70, 68336, 68585, 132972, 133121},
    {71, 68586, 68935, 133122, 133471},
    {72, 68936, 68985, 133472, 133521},
    {73, 68986, 69035, 133522, 133571},
    {74, 69036, 69465, 133572, 134001},
    {75, 69466, 70315},
    {76, 70316, 70365},
    {85, 70366, 70545, 134002, 134181},
    {87, 70546, 70595, 134182, 134231},
    {88, 70596, 70645, 134232, 134281},
    {103, 70646, 70655, 134282, 134291},
    {106, 70656, 70705, 134292, 134341},
};

consteval std::int32_t sysBand(std::string_view name) { return valueOf(names::SYS_BAND, name); }

constexpr std::int32_t kII = sysBand("SYS_BAND_WCDMA_II_PCS_1900");
constexpr std::int32_t kIV = sysBand("SYS_BAND_WCDMA_IV_1700");
constexpr std::int32_t kV = sysBand("SYS_BAND_WCDMA_V_850");
constexpr std::int32_t kVI = sysBand("SYS_BAND_WCDMA_VI_800");
constexpr std::int32_t kVII = sysBand("SYS_BAND_WCDMA_VII_2600");
constexpr std::int32_t kXIX = sysBand("SYS_BAND_WCDMA_XIX_850");
constexpr ChannelBand kUtraBands[] = {
    {1, sysBand("SYS_BAND_WCDMA_I_IMT_2000"), 10562, 10838},
    {2, kII, 9662, 9938},
    {2, kII, 412, 687, 25},
    {3, sysBand("SYS_BAND_WCDMA_III_1700"), 1162, 1513},
    {4, kIV, 1537, 1738},
    {4, kIV, 1887, 2087, 25},
    {5, kV, 4357, 4458},
    {5, kV, 1007, 1032, 25},
    {5, kV, 1012, 1087, 25},
    {6, kVI, 4387, 4413},
    {6, kVI, 1037, 1062, 25},
    {7, kVII, 2237, 2563},
    {7, kVII, 2587, 2912, 25},
    {8, sysBand("SYS_BAND_WCDMA_VIII_900"), 2937, 3088},
    {9, sysBand("SYS_BAND_WCDMA_IX_1700"), 9237, 9387},
    {10, kUnnamed, 3112, 3388},
    {10, kUnnamed, 3412, 3687, 25},
    {11, sysBand("SYS_BAND_WCDMA_XI_1500"), 3712, 3787},
    {12, kUnnamed, 3842, 3903},
    {12, kUnnamed, 3932, 3957, 25},
    {12, kUnnamed, 3962, 3987, 25},
    {12, kUnnamed, 3992, 3992},
    {13, kUnnamed, 4017, 4043},
    {13, kUnnamed, 4067, 4092, 25},
    {14, kUnnamed, 4117, 4143},
    {14, kUnnamed, 4167, 4192, 25},
    {19, kXIX, 712, 763},
    {19, kXIX, 787, 837, 25},
    {20, kUnnamed, 4512, 4638},
    {21, kUnnamed, 862, 912},
    {22, kUnnamed, 4662, 5038},
    {25, kUnnamed, 5112, 5413},
    {25, kUnnamed, 6292, 6592, 25},
    {26, kUnnamed, 5762, 5913},
    {26, kUnnamed, 5937, 6087, 25},
    {26, kUnnamed, 5992, 6067, 25},
    {32, kUnnamed, 6617, 6813},
    {32, kUnnamed, 6837, 7012, 25},
};

constexpr ChannelBand kGsmBands[] = {
    {450, sysBand("SYS_BAND_GSM_450"), 259, 293},
    {480, sysBand("SYS_BAND_GSM_480"), 306, 340},
    {750, sysBand("SYS_BAND_GSM_750"), 438, 511},
    {850, sysBand("SYS_BAND_GSM_850"), 128, 251},
    {900, sysBand("SYS_BAND_GSM_PGSM_900"), 1, 124},
    {900, sysBand("SYS_BAND_GSM_EGSM_900"), 0, 0},
    {900, sysBand("SYS_BAND_GSM_EGSM_900"), 975, 1023},
    {900, sysBand("SYS_BAND_GSM_RGSM_900"), 955, 974},
    {900, kUnnamed, 940, 954},  // ER-GSM
    {1800, sysBand("SYS_BAND_GSM_DCS_1800"), 512, 885},
    {1900, sysBand("SYS_BAND_GSM_PCS_1900"), 512, 810},
};

const EutraBand* eutraRow(std::uint32_t earfcn) {
  for (const EutraBand& row : kEutraBands)
    if (row.first <= earfcn && earfcn <= row.last) return &row;
  return nullptr;
}

const ChannelBand* onlyRow(std::span<const ChannelBand> rows, std::uint32_t channel) {
  const ChannelBand* only = nullptr;
  for (const ChannelBand& row : rows) {
    if (channel < row.first || channel > row.last || (channel - row.first) % row.step != 0)
      continue;
    if (only) return nullptr;
    only = &row;
  }
  return only;
}

std::optional<std::int32_t> nameOf(const ChannelBand* row) {
  if (!row || row->sysBand == kUnnamed) return std::nullopt;
  return row->sysBand;
}

}  // namespace

std::span<const EutraBand> eutraBands() { return kEutraBands; }
std::span<const ChannelBand> utraBands() { return kUtraBands; }
std::span<const ChannelBand> gsmBands() { return kGsmBands; }

std::optional<std::uint32_t> eutraBandOf(std::uint32_t earfcn) {
  const EutraBand* row = eutraRow(earfcn);
  if (!row) return std::nullopt;
  return row->band;
}

std::optional<std::uint32_t> eutraUplinkOf(std::uint32_t earfcn) {
  const EutraBand* row = eutraRow(earfcn);
  if (!row || row->uplinkLast == 0) return std::nullopt;
  const std::uint32_t uplink = row->uplinkFirst + (earfcn - row->first);
  if (uplink > row->uplinkLast) return std::nullopt;
  return uplink;
}

std::optional<std::uint32_t> utraBandOf(std::uint32_t uarfcn) {
  const ChannelBand* row = onlyRow(kUtraBands, uarfcn);
  if (!row) return std::nullopt;
  return row->band;
}

std::optional<std::int32_t> utraSysBandOf(std::uint32_t uarfcn) {
  return nameOf(onlyRow(kUtraBands, uarfcn));
}

std::optional<std::int32_t> gsmSysBandOf(std::uint32_t arfcn) {
  return nameOf(onlyRow(kGsmBands, arfcn));
}

}  // namespace quorin::modem
