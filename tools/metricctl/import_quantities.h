#pragma once

#include "tools/metricctl/import_values.h"

namespace quorin::metricctl {

// The numbers that a field can have (3GPP
// TS 23.003, 36.101, 36.211, 36.331, 36.413, 25.331, 45.005).
inline constexpr Quantity kPci{.highest = 503, .whole = true};
inline constexpr Quantity kEarfcn{.highest = 262143, .whole = true};
inline constexpr Quantity kEutraBand{.lowest = 1, .highest = 256, .whole = true};
inline constexpr Quantity kEci{.highest = 0xFFFFFFF, .whole = true};
inline constexpr Quantity kCellOfEnb{.highest = 255, .whole = true};
inline constexpr Quantity kEnb{.highest = 0xFFFFF, .whole = true};
inline constexpr Quantity kPsc{.highest = 511, .whole = true};
inline constexpr Quantity kUarfcn{.highest = 16383, .whole = true};
inline constexpr Quantity kCellOfRnc{.highest = 0xFFFF, .whole = true};
inline constexpr Quantity kRnc{.highest = 4095, .whole = true};
inline constexpr Quantity kArfcn{.highest = 1023, .whole = true};
inline constexpr Quantity kBsic{.highest = 63, .whole = true};
inline constexpr Quantity kCellOfLac{.highest = 0xFFFF, .whole = true};
// 0000 and FFFE are no areas, and FFFF stands for an unknown one.
inline constexpr Quantity kArea{.lowest = 1, .highest = 0xFFFD, .whole = true};
inline constexpr Quantity kMcc{.lowest = 1, .highest = 999, .whole = true};
inline constexpr Quantity kMnc{.highest = 999, .whole = true};
inline constexpr Quantity kMncDigits{.lowest = 2, .highest = 3, .whole = true};
inline constexpr Quantity kTrue{.lowest = 1, .highest = 1, .whole = true};

}  // namespace quorin::metricctl
