#pragma once

#include <algorithm>
#include <bit>

#include "messages/codec/field_table.h"

namespace quorin {

/// What a field's number usually lies between. It tells the reader how long a number to expect, and
/// nothing else: any other is read as well.
struct UsualRange {
  std::string_view key;
  std::int64_t lowest;
  std::int64_t highest;
  std::string_view className = {};  // empty: of every class
};

// Numbers that take one byte of a varint have no row; nor have those of four and more. What holds
// for one class stands before what holds for every other.
inline constexpr UsualRange kUsualRanges[] = {
    // The carrier-aggregation lists count hundredths.
    {"rsrp", -14'000, -4'400, "SccRxMeasurement"},
    {"rsrq", -1'950, -300, "SccRxMeasurement"},
    {"rssi", -10'000, -2'500, "SccRxMeasurement"},
    {"rsrp", -14'000, -4'400, "SecondaryComponentCarrier"},
    {"rsrq", -1'950, -300, "SecondaryComponentCarrier"},
    {"rssi", -10'000, -2'500, "SecondaryComponentCarrier"},

    // Levels, dBm.
    {"idle_rxlev_dBm", -110, -48},  // 3GPP TS 45.008, 8.1.4
    {"nbr_rsrp", -140, -44},        // TS 36.133, 9.1.4
    {"rsrp", -140, -44, "LteCellMeasResult"},
    {"rsrp0", -140, -44},
    {"rsrp1", -140, -44},
    {"rscp", -120, -25},  // TS 25.133, 9.1.1.3
    {"rssi", -100, -25},  // TS 25.133, 9.1.3.3

    // Cells.
    {"cpich_sc", 0, 511},  // TS 25.213, 5.2.3
    {"psc", 0, 511},
    {"nbr_phys_cell_id", 0, 503},  // TS 36.211, 6.11
    {"pci", 0, 503},
    {"phy_cell_id", 0, 503},
    {"physical_cell_id", 0, 503},

    // Channel numbers.
    {"arfcn", 0, 1023},  // TS 45.005, 2
    {"arfcn_bcch", 0, 1023},
    {"scell_arfcn", 0, 1023},
    {"dl_uarfcn", 0, 16'383},  // TS 25.331, 10.3.6.36
    {"uarfcn", 0, 16'383},
    {"dl_earfcn", 0, 65'535},  // TS 36.331, 6.3.4
    {"dl_freq", 0, 65'535},
    {"earfcn", 0, 65'535},
    {"nbr_earfcn", 0, 65'535},
    {"pcc_earfcn", 0, 65'535},
    {"scc0_earfcn", 0, 65'535},
    {"scc1_earfcn", 0, 65'535},
    {"ul_earfcn", 0, 65'535},
    {"ul_freq", 0, 65'535},

    // Identities: TS 23.003.
    {"mcc", 0, 999},
    {"sel_plmn_mcc", 0, 999},
    {"ci", 0, 65'535},
    {"lac", 0, 65'535},
    {"mmegi", 0, 65'535},
    {"tac", 0, 65'535},
    {"tracking_area_code", 0, 65'535},

    // Times.
    {"drx_cycle_length_ms", 80, 5'120},  // TS 25.331, 10.3.3.49
    {"long_drx_cycle_ms", 10, 2'560},    // TS 36.331, 6.3.2
    {"prev_state_dur_ms", 0, 600'000},
    {"t3212_dur_s", 0, 91'800},  // TS 24.008, 10.5.1.12.2
    {"t3312_dur_s", 0, 11'160},  // TS 24.008, 10.5.7.3
    {"t3412_dur_s", 0, 11'160},

    {"ef_id", 0x2f00, 0x6fff},  // TS 31.102, 4
};

/// The first range that fits the class's field; null where none does.
constexpr const UsualRange* usualRange(std::string_view className, const Field& field) {
  if (field.kind != Kind::uint32 && field.kind != Kind::sint32) return nullptr;
  const auto* range = std::ranges::find_if(kUsualRanges, [&](const UsualRange& row) {
    return row.key == field.key && (row.className.empty() || row.className == className);
  });
  return range == std::end(kUsualRanges) ? nullptr : range;
}

/// How many bytes the largest usual number takes as a varint; 1 where there is no row.
constexpr unsigned usualBytes(std::string_view className, const Field& field) {
  const UsualRange* range = usualRange(className, field);
  if (!range) return 1;
  const auto zigzag = [](std::int64_t n) { return n < 0 ? -2 * n - 1 : 2 * n; };
  const std::int64_t largest = field.kind == Kind::sint32
                                   ? std::max(zigzag(range->lowest), zigzag(range->highest))
                                   : range->highest;
  return static_cast<unsigned>(std::bit_width(static_cast<std::uint64_t>(largest)) + 6) / 7;
}

}  // namespace quorin
