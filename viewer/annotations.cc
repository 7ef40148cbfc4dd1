#include "viewer/annotations.h"

#include <algorithm>
#include <array>

namespace quorin {

namespace {

constexpr std::string_view kRsrp = "3GPP TS 36.214, 5.1.1";
constexpr std::string_view kRsrq = "3GPP TS 36.214, 5.1.3";  // and the carrier RSSI in it
constexpr std::string_view kRscp = "3GPP TS 25.215, 5.1.1";
constexpr std::string_view kPucchPower = "3GPP TS 36.213, 5.1.2.1";
constexpr std::string_view kPuschPower = "3GPP TS 36.213, 5.1.1.1";
constexpr std::string_view kLteSelection = "3GPP TS 36.304, 5.2.3.2";
constexpr std::string_view kLteReselection = "3GPP TS 36.304, 5.2.4.7";
constexpr std::string_view kUmtsSelection = "3GPP TS 25.304, 5.2.3.1.2";
constexpr std::string_view kUmtsReselection = "3GPP TS 25.304, 5.2.6.1.5";
constexpr std::string_view kGsmSelection = "3GPP TS 45.008, 6.4";
constexpr std::string_view kDrx = "3GPP TS 36.321, 5.7";

// Whether a field is a level, a report index or a parameter in dB is told by its sign and its list:
// signed levels are dBm or dB, unsigned ones report indices, broadcast parameters dB.
constexpr AnnotationRow kRows[] = {
    {"Device Info SIM Files", "ef_id", "", "", &kFileIdentifier},

    {"LTE NAS", "update_status", "", "", &kEpsUpdateStatus},
    {"LTE NAS", "ue_op_mode", "", "", &kModeOfOperation},
    {"LTE NAS", "t3412_dur_s", "s", "3GPP TS 24.301, 10.2"},

    {"LTE RRC State", "prev_state_dur_ms", "ms"},
    {"LTE RRC State", "cause", "", "", &kLteRrcCause},

    {"LTE Serving Cell Info", "phy_cell_id", "", "", &kPhysicalCellIdentity},
    {"LTE Serving Cell Info", "dl_freq", "", "", &kEarfcnDownlink},
    {"LTE Serving Cell Info", "ul_freq", "", "", &kEarfcnUplink},
    {"LTE Serving Cell Info", "dl_bw", "MHz", "", &kWholeBandwidth},
    {"LTE Serving Cell Info", "ul_bw", "MHz", "", &kWholeBandwidth},
    {"LTE Serving Cell Info", "cell_id", "", "", &kEutranCellIdentity},

    {"LTE Serving Cell Meas", "phy_cell_id", "", "", &kPhysicalCellIdentity},
    {"LTE Serving Cell Meas", "rsrp0", "dBm", kRsrp},
    {"LTE Serving Cell Meas", "rsrp1", "dBm", kRsrp},
    {"LTE Serving Cell Meas", "rsrq0", "dB", kRsrq},
    {"LTE Serving Cell Meas", "rsrq1", "dB", kRsrq},
    {"LTE Serving Cell Meas", "sinr0", "dB"},
    {"LTE Serving Cell Meas", "sinr1", "dB"},

    {"LTE Tx Power", "pucch_tx_power", "dBm", kPucchPower},
    {"LTE Tx Power", "pusch_tx_power", "dBm", kPuschPower},

    {"LTE Sel Resel Parameters", "QRxLevMin", "dBm", kLteSelection},
    {"LTE Sel Resel Parameters", "QQualMin", "dB", kLteSelection},
    {"LTE Sel Resel Parameters", "Q_hyst", "dB", kLteReselection},
    {"LTE Sel Resel Parameters", "S_non_intra_search_P", "dB", kLteReselection},
    {"LTE Sel Resel Parameters", "S_non_intra_search_Q", "dB", kLteReselection},
    {"LTE Sel Resel Parameters", "S_intra_search_P", "dB", kLteReselection},
    {"LTE Sel Resel Parameters", "S_intra_search_Q", "dB", kLteReselection},
    {"LTE Sel Resel Parameters", "Thresh_serving_lowP", "dB", kLteReselection},

    {"LTE EUTRA Neighbor Info", "earfcn", "", "", &kEarfcnDownlink},
    {"LTE EUTRA Neighbor Info", "Q_rxlev_min", "dBm", kLteSelection},
    {"LTE EUTRA Neighbor Info", "Q_qual_min", "dB", kLteSelection},
    {"LTE EUTRA Neighbor Info", "Q_offset", "dB", kLteReselection},
    {"LTE EUTRA Neighbor Info", "Pmax", "dBm", kLteSelection},
    {"LTE EUTRA Neighbor Info", "dl_bw", "MHz", "", &kBandwidth},
    {"LTE EUTRA Neighbor Info", "Thres_X_highP", "dB", kLteReselection},
    {"LTE EUTRA Neighbor Info", "Thres_X_lowP", "dB", kLteReselection},
    {"LTE EUTRA Neighbor Info", "Thres_X_highQ", "dB", kLteReselection},
    {"LTE EUTRA Neighbor Info", "Thres_X_lowQ", "dB", kLteReselection},

    {"LTE C-DRX", "on_duration_ms", "ms", kDrx},
    {"LTE C-DRX", "drx_inactivity_ms", "ms", kDrx},
    {"LTE C-DRX", "drx_retx_timer_ms", "ms", kDrx},
    {"LTE C-DRX", "long_drx_cycle_ms", "ms", kDrx},
    {"LTE C-DRX", "short_drx_cycle_ms", "ms", kDrx},
    {"LTE C-DRX", "transmission_mode", "", "", &kTransmissionMode},

    {"LTE LTE Neighbor Cell Meas", "nbr_earfcn", "", "", &kEarfcnDownlink},
    {"LTE LTE Neighbor Cell Meas", "nbr_phys_cell_id", "", "", &kPhysicalCellIdentity},
    {"LTE LTE Neighbor Cell Meas", "nbr_rsrp", "dBm", kRsrp},
    {"LTE LTE Neighbor Cell Meas", "nbr_rsrq", "dB", kRsrq},

    {"LTE UMTS Neighbor Cell Meas", "uarfcn", "", "", &kUarfcnDownlink},
    {"LTE UMTS Neighbor Cell Meas", "rscp", "dBm", kRscp},
    {"LTE UMTS Neighbor Cell Meas", "ecno", "", "", &kHalvedEcNoReport},

    {"* GSM Neighbor Cell Meas", "arfcn", "", "", &kArfcnDownlink},
    {"* GSM Neighbor Cell Meas", "bsic", "", "", &kBaseStationIdentityCode},
    {"* GSM Neighbor Cell Meas", "rxlev", "", "", &kRxlevReport},

    {"LTE CA Status", "pci", "", "", &kPhysicalCellIdentity},
    {"LTE CA Status", "dl_earfcn", "", "", &kEarfcnDownlink},
    {"LTE CA Status", "dl_bandwidth", "MHz", "", &kBandwidth},
    {"LTE CA Status", "ul_earfcn", "", "", &kEarfcnUplink},
    {"LTE CA Status", "ul_bandwidth", "", "", &kBandwidthCode},
    {"LTE CA Status", "rsrp", "dBm", kRsrp},
    {"LTE CA Status", "rsrq", "dB", kRsrq},
    {"LTE CA Status", "snr", "dB"},
    {"LTE CA Status", "rssi", "dBm", kRsrq},

    {"LTE Secondary Cell Meas", "rsrp", "dBm", kRsrp},
    {"LTE Secondary Cell Meas", "rsrq", "dB", kRsrq},
    {"LTE Secondary Cell Meas", "snr", "dB"},
    {"LTE Secondary Cell Meas", "rssi", "dBm", kRsrq},

    {"* NAS GMM", "update_status", "", "", &kGprsUpdateStatus},
    {"* NAS GMM", "t3312_dur_s", "s", "3GPP TS 24.008, 11.2.2"},
    {"* NAS GMM", "proc_failure_cause", "", "", &kNasProcedureFailure},

    {"* NAS MM", "update_status", "", "", &kMmUpdateStatus},
    {"* NAS MM", "t3212_dur_s", "s", "3GPP TS 24.008, 11.2"},
    {"* NAS MM", "proc_failure_cause", "", "", &kNasProcedureFailure},

    {"UMTS RRC Configuration", "drx_cycle_length_ms", "ms", "3GPP TS 25.304, 8.3"},

    {"UMTS Serving Cell Info", "cell_id", "", "", &kUtranCellIdentity},
    {"UMTS Serving Cell Info", "dl_uarfcn", "", "", &kUarfcnDownlink},

    {"UMTS Tx Power", "pucch_tx_power", "dBm"},
    {"UMTS Tx Power", "pusch_tx_power", "dBm"},

    {"UMTS Sel Resel Parameters", "s_rxlev", "dB", kUmtsSelection},
    {"UMTS Sel Resel Parameters", "s_qual", "dB", kUmtsSelection},
    {"UMTS Sel Resel Parameters", "s_intrasearch", "dB", kUmtsReselection},
    {"UMTS Sel Resel Parameters", "s_intersearch", "dB", kUmtsReselection},
    {"UMTS Sel Resel Parameters", "s_search_rat", "dB", kUmtsReselection},

    {"UMTS EUTRA Neighbor Info", "earfcn", "", "", &kEarfcnDownlink},
    {"UMTS UTRA Neighbor Info", "uarfcn", "", "", &kUarfcnDownlink},
    {"UMTS GSM Neighbor Info", "arfcn", "", "", &kArfcnDownlink},

    {"UMTS LTE Neighbor Cell Meas", "earfcn", "", "", &kEarfcnDownlink},
    {"UMTS LTE Neighbor Cell Meas", "phy_cell_id", "", "", &kPhysicalCellIdentity},
    {"UMTS LTE Neighbor Cell Meas", "rsrp", "dBm", kRsrp},
    {"UMTS LTE Neighbor Cell Meas", "rsrq", "dB", kRsrq},

    {"UMTS UMTS Neighbor Cell Meas", "uarfcn", "", "", &kUarfcnDownlink},
    {"UMTS UMTS Neighbor Cell Meas", "ecno", "", "", &kHalvedEcNoReport},
    {"UMTS UMTS Neighbor Cell Meas", "rscp", "dBm", kRscp},

    {"GSM Serving Cell Info", "arfcn", "", "", &kArfcnDownlink},
    {"GSM Serving Cell Info", "bsic", "", "", &kBaseStationIdentityCode},

    {"GSM Idle Config", "arfcn_bcch", "", "", &kArfcnDownlink},
    {"GSM Idle Config", "bsic", "", "", &kBaseStationIdentityCode},
    {"GSM Idle Config", "ms_txpwr", "dBm", kGsmSelection},
    {"GSM Idle Config", "rx_acc_min", "", "", &kRxlevReport},
    {"GSM Idle Config", "tmp_offset", "dB", kGsmSelection},
    {"GSM Idle Config", "t3212", "decihours", "3GPP TS 44.018, 10.5.2.11"},

    {"GSM Idle Serv Cell Meas", "scell_arfcn", "", "", &kArfcnDownlink},
    {"GSM Idle Serv Cell Meas", "idle_rxlev_dBm", "dBm", "3GPP TS 45.008, 8.1"},

    {"GSM LTE Neighbor Cell Meas", "physical_cell_id", "", "", &kPhysicalCellIdentity},
    {"GSM LTE Neighbor Cell Meas", "bandwidth", "", "", &kBandwidthCode},
    {"GSM LTE Neighbor Cell Meas", "rsrp", "", "", &kRsrpReport},
    {"GSM LTE Neighbor Cell Meas", "earfcn", "", "", &kEarfcnDownlink},
    {"GSM LTE Neighbor Cell Meas", "rsrq", "", "", &kHalvedRsrqReport},

    {"GSM UMTS Neighbor Cell Meas", "dl_uarfcn", "", "", &kUarfcnDownlink},
    {"GSM UMTS Neighbor Cell Meas", "cpich_rscp", "", "", &kRscpReport},
    {"GSM UMTS Neighbor Cell Meas", "cpich_ecn0", "", "", &kEcNoReport},
};

constexpr auto kRowsByKey = [] {
  std::array<const AnnotationRow*, std::size(kRows)> rows{};
  std::ranges::transform(kRows, rows.begin(), [](const AnnotationRow& row) { return &row; });
  std::ranges::sort(rows, {}, &AnnotationRow::key);
  return rows;
}();

const AnnotationRow* annotationRow(std::string_view pageKey, std::string_view rowKey) {
  const auto* row = std::ranges::lower_bound(kRowsByKey, rowKey, {}, &AnnotationRow::key);
  for (; row != kRowsByKey.end() && (*row)->key == rowKey; ++row)
    if (covers(**row, pageKey)) return *row;
  return nullptr;
}

}  // namespace

std::span<const AnnotationRow> annotationRows() { return kRows; }

bool covers(const AnnotationRow& row, std::string_view pageKey) {
  return row.page.starts_with("* ") ? pageKey.ends_with(row.page.substr(1)) : pageKey == row.page;
}

Annotation annotationFor(std::string_view pageKey, std::string_view rowKey,
                         std::string_view detailText) {
  const AnnotationRow* row = annotationRow(pageKey, rowKey);
  if (!row) return {};
  if (!row->reading)
    return numberIn(detailText) ? Annotation{std::string(row->unit), "", row->clause}
                                : Annotation{};
  auto meaning = meaningOf(*row->reading, detailText);
  if (!meaning) return {};
  return {std::string(row->unit), std::move(meaning->text), meaning->clause};
}

}  // namespace quorin
