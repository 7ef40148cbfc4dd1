#include "viewer/annotations.h"

#include <map>
#include <set>

#include "messages/catalogue.h"
#include "metrics/metric_cases.h"
#include "tests/support/intake.h"
#include "tests/support/sample_metrics.h"
#include "tests/support/walk.h"
#include "viewer/page_tree.h"

namespace quorin::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Told {
  const char* page;
  const char* key;
  const char* detail;
  const char* unit;
  const char* meaning;
  const char* clause;
};

void expectTold(std::span<const Told> rows) {
  for (const Told& row : rows)
    EXPECT_EQ(annotationFor(row.page, row.key, row.detail),
              (Annotation{row.unit, row.meaning, row.clause}))
        << row.page << ", " << row.key << " " << row.detail;
}

TEST(Annotations, TellTheUnitOfANumber) {
  constexpr Told kRows[] = {
      {"LTE Serving Cell Meas", "rsrp0", "-95", "dBm", "", "3GPP TS 36.214, 5.1.1"},
      {"LTE Serving Cell Meas", "rsrq1", "-11", "dB", "", "3GPP TS 36.214, 5.1.3"},
      {"LTE Serving Cell Meas", "sinr0", "12.5", "dB", "", ""},
      {"LTE RRC State", "prev_state_dur_ms", "44000", "ms", "", ""},
      {"LTE NAS", "t3412_dur_s", "3240", "s", "", "3GPP TS 24.301, 10.2"},
      {"LTE LTE Neighbor Cell Meas", "nbr_rsrq", "-10.5", "dB", "", "3GPP TS 36.214, 5.1.3"},
      {"LTE CA Status", "rssi", "-46", "dBm", "", "3GPP TS 36.214, 5.1.3"},
      {"UMTS NAS GMM", "t3312_dur_s", "3240", "s", "", "3GPP TS 24.008, 11.2.2"},
      {"GSM NAS MM", "t3212_dur_s", "3600", "s", "", "3GPP TS 24.008, 11.2"},
      {"UMTS UMTS Neighbor Cell Meas", "rscp", "-92", "dBm", "", "3GPP TS 25.215, 5.1.1"},
      {"UMTS Sel Resel Parameters", "s_rxlev", "-30", "dB", "", "3GPP TS 25.304, 5.2.3.1.2"},
      {"GSM Idle Serv Cell Meas", "idle_rxlev_dBm", "-71", "dBm", "", "3GPP TS 45.008, 8.1"},
      {"GSM Idle Config", "t3212", "10", "decihours", "", "3GPP TS 44.018, 10.5.2.11"},
  };
  expectTold(kRows);
}

TEST(Annotations, TellTheIntervalOfAReportIndex) {
  constexpr const char* kGsmLte = "GSM LTE Neighbor Cell Meas";
  constexpr const char* kGsmUmts = "GSM UMTS Neighbor Cell Meas";
  constexpr const char* kRsrp = "3GPP TS 36.133, 9.1.4";
  constexpr const char* kRsrq = "3GPP TS 36.133, 9.1.7";
  constexpr const char* kRscp = "3GPP TS 25.133, 9.1.1.3";
  constexpr const char* kEcNo = "3GPP TS 25.133, 9.1.2.3";
  constexpr const char* kRxlev = "3GPP TS 45.008, 8.1.4";
  constexpr Told kRows[] = {
      {kGsmLte, "rsrp", "0", "", "RSRP < -140 dBm", kRsrp},
      {kGsmLte, "rsrp", "1", "", "-140 ≤ RSRP < -139 dBm", kRsrp},
      {kGsmLte, "rsrp", "44", "", "-97 ≤ RSRP < -96 dBm", kRsrp},
      {kGsmLte, "rsrp", "96", "", "-45 ≤ RSRP < -44 dBm", kRsrp},
      {kGsmLte, "rsrp", "97", "", "RSRP ≥ -44 dBm", kRsrp},

      // The store halves these.
      {kGsmLte, "rsrq", "0.0", "", "RSRQ < -19.5 dB", kRsrq},
      {kGsmLte, "rsrq", "0.5", "", "-19.5 ≤ RSRQ < -19 dB", kRsrq},
      {kGsmLte, "rsrq", "8.5", "", "-11.5 ≤ RSRQ < -11 dB", kRsrq},
      {kGsmLte, "rsrq", "16.5", "", "-3.5 ≤ RSRQ < -3 dB", kRsrq},
      {kGsmLte, "rsrq", "17.0", "", "RSRQ ≥ -3 dB", kRsrq},
      {"LTE UMTS Neighbor Cell Meas", "ecno", "0.0", "", "Ec/No < -24 dB", kEcNo},
      {"LTE UMTS Neighbor Cell Meas", "ecno", "0.5", "", "-24 ≤ Ec/No < -23.5 dB", kEcNo},
      {"LTE UMTS Neighbor Cell Meas", "ecno", "13.5", "", "-11 ≤ Ec/No < -10.5 dB", kEcNo},
      {"UMTS UMTS Neighbor Cell Meas", "ecno", "24.0", "", "-0.5 ≤ Ec/No < 0 dB", kEcNo},
      {"UMTS UMTS Neighbor Cell Meas", "ecno", "24.5", "", "Ec/No ≥ 0 dB", kEcNo},

      // And these not.
      {kGsmUmts, "cpich_ecn0", "0", "", "Ec/No < -24 dB", kEcNo},
      {kGsmUmts, "cpich_ecn0", "1", "", "-24 ≤ Ec/No < -23.5 dB", kEcNo},
      {kGsmUmts, "cpich_ecn0", "27", "", "-11 ≤ Ec/No < -10.5 dB", kEcNo},
      {kGsmUmts, "cpich_ecn0", "48", "", "-0.5 ≤ Ec/No < 0 dB", kEcNo},
      {kGsmUmts, "cpich_ecn0", "49", "", "Ec/No ≥ 0 dB", kEcNo},
      {kGsmUmts, "cpich_rscp", "0", "", "RSCP < -115 dBm", kRscp},
      {kGsmUmts, "cpich_rscp", "1", "", "-115 ≤ RSCP < -114 dBm", kRscp},
      {kGsmUmts, "cpich_rscp", "25", "", "-91 ≤ RSCP < -90 dBm", kRscp},
      {kGsmUmts, "cpich_rscp", "90", "", "-26 ≤ RSCP < -25 dBm", kRscp},
      {kGsmUmts, "cpich_rscp", "91", "", "RSCP ≥ -25 dBm", kRscp},

      // The standard does not say where a level exactly between two of these belongs.
      {"LTE GSM Neighbor Cell Meas", "rxlev", "0", "", "level < -110 dBm", kRxlev},
      {"LTE GSM Neighbor Cell Meas", "rxlev", "1", "", "level -110 to -109 dBm", kRxlev},
      {"UMTS GSM Neighbor Cell Meas", "rxlev", "30", "", "level -81 to -80 dBm", kRxlev},
      {"GSM GSM Neighbor Cell Meas", "rxlev", "62", "", "level -49 to -48 dBm", kRxlev},
      {"GSM GSM Neighbor Cell Meas", "rxlev", "63", "", "level > -48 dBm", kRxlev},
      {"GSM Idle Config", "rx_acc_min", "6", "", "level -105 to -104 dBm", kRxlev},

      // Outside.
      {kGsmLte, "rsrp", "98", "", "", ""},
      {kGsmLte, "rsrp", "-1", "", "", ""},
      {kGsmLte, "rsrp", "4294967295", "", "", ""},
      {kGsmLte, "rsrp", "44.5", "", "", ""},
      {kGsmLte, "rsrq", "17.5", "", "", ""},
      {kGsmLte, "rsrq", "8.25", "", "", ""},
      {"LTE UMTS Neighbor Cell Meas", "ecno", "25.0", "", "", ""},
      {"LTE UMTS Neighbor Cell Meas", "ecno", "-0.5", "", "", ""},
      {kGsmUmts, "cpich_ecn0", "50", "", "", ""},
      {kGsmUmts, "cpich_rscp", "92", "", "", ""},
      {"GSM GSM Neighbor Cell Meas", "rxlev", "64", "", "", ""},
      {"GSM Idle Config", "rx_acc_min", "-1", "", "", ""},
  };
  expectTold(kRows);
}

TEST(Annotations, TellTheFrequencyAndBandOfAChannel) {
  constexpr const char* kEarfcn = "3GPP TS 36.101, 5.7.3";
  constexpr const char* kUarfcn = "3GPP TS 25.101, 5.4.3";
  constexpr const char* kArfcn = "3GPP TS 45.005, 2";
  constexpr const char* kUmtsLte = "UMTS EUTRA Neighbor Info";
  constexpr const char* kUmtsGsm = "UMTS GSM Neighbor Info";
  constexpr Told kRows[] = {
      {kUmtsLte, "earfcn", "0", "", "2110 MHz, band 1", kEarfcn},
      {kUmtsLte, "earfcn", "599", "", "2169.9 MHz, band 1", kEarfcn},
      {kUmtsLte, "earfcn", "600", "", "1930 MHz, band 2", kEarfcn},
      {kUmtsLte, "earfcn", "1300", "", "1815 MHz, band 3", kEarfcn},
      {kUmtsLte, "earfcn", "3801", "", "1845 MHz, band 9", kEarfcn},
      {kUmtsLte, "earfcn", "6300", "", "806 MHz, band 20", kEarfcn},
      {kUmtsLte, "earfcn", "37750", "", "2570 MHz, band 38", kEarfcn},
      {kUmtsLte, "earfcn", "66436", "", "2110 MHz, band 66", kEarfcn},
      {kUmtsLte, "earfcn", "68935", "", "651.9 MHz, band 71", kEarfcn},
      {"LTE Serving Cell Info", "dl_freq", "6300", "", "806 MHz, band 20", kEarfcn},
      {"LTE Serving Cell Info", "ul_freq", "24300", "", "847 MHz, band 20", kEarfcn},
      {"LTE CA Status", "ul_earfcn", "19200", "", "1710 MHz, band 3", kEarfcn},
      {"LTE CA Status", "ul_earfcn", "133471", "", "697.9 MHz, band 71", kEarfcn},
      {"UMTS UTRA Neighbor Info", "uarfcn", "10713", "", "2142.6 MHz, band I", kUarfcn},
      {"UMTS UTRA Neighbor Info", "uarfcn", "2937", "", "927.4 MHz, band VIII", kUarfcn},
      {"UMTS UTRA Neighbor Info", "uarfcn", "3088", "", "957.6 MHz, band VIII", kUarfcn},
      {"UMTS UTRA Neighbor Info", "uarfcn", "4400", "", "880 MHz, band V or 880 MHz, band VI",
       kUarfcn},
      {kUmtsGsm, "arfcn", "0", "", "935 MHz, GSM 900", kArfcn},
      {kUmtsGsm, "arfcn", "62", "", "947.4 MHz, GSM 900", kArfcn},
      {kUmtsGsm, "arfcn", "124", "", "959.8 MHz, GSM 900", kArfcn},
      {kUmtsGsm, "arfcn", "128", "", "869.2 MHz, GSM 850", kArfcn},
      {kUmtsGsm, "arfcn", "512", "", "1805.2 MHz, DCS 1800 or 1930.2 MHz, PCS 1900", kArfcn},
      {kUmtsGsm, "arfcn", "811", "", "1865 MHz, DCS 1800", kArfcn},
      {kUmtsGsm, "arfcn", "885", "", "1879.8 MHz, DCS 1800", kArfcn},
      {kUmtsGsm, "arfcn", "975", "", "925.2 MHz, GSM 900", kArfcn},
      {kUmtsGsm, "arfcn", "1023", "", "934.8 MHz, GSM 900", kArfcn},
      {kUmtsLte, "earfcn", "4950", "", "", ""},
      {kUmtsLte, "earfcn", "18000", "", "", ""},
      {kUmtsLte, "earfcn", "70000", "", "", ""},
      {"LTE Serving Cell Info", "ul_freq", "6300", "", "", ""},
      {"UMTS UTRA Neighbor Info", "uarfcn", "10839", "", "", ""},
      {kUmtsGsm, "arfcn", "125", "", "", ""},
      {kUmtsGsm, "arfcn", "886", "", "", ""},
      {kUmtsGsm, "arfcn", "1024", "", "", ""},
  };
  expectTold(kRows);
}

TEST(Annotations, TellTheResourceBlocksOfABandwidth) {
  constexpr const char* kClause = "3GPP TS 36.101, 5.6";
  constexpr Told kRows[] = {
      // Halved: a page shows 1.4 MHz as 1.
      {"LTE Serving Cell Info", "dl_bw", "1", "MHz", "1.4 MHz, 6 RB", kClause},
      {"LTE Serving Cell Info", "ul_bw", "10", "MHz", "50 RB", kClause},
      {"LTE Serving Cell Info", "dl_bw", "20", "MHz", "100 RB", kClause},
      {"LTE Serving Cell Info", "dl_bw", "2", "", "", ""},
      {"LTE Serving Cell Info", "dl_bw", "-2", "", "", ""},
      // Codes that the store turned into MHz, and one that it could not.
      {"LTE CA Status", "dl_bandwidth", "1.4", "MHz", "6 RB", kClause},
      {"LTE CA Status", "dl_bandwidth", "20.0", "MHz", "100 RB", kClause},
      {"LTE CA Status", "dl_bandwidth", "6", "", "", ""},
      {"LTE EUTRA Neighbor Info", "dl_bw", "10.0", "MHz", "50 RB", kClause},
      {"LTE EUTRA Neighbor Info", "dl_bw", "10", "", "", ""},
      // Codes as they came.
      {"LTE CA Status", "ul_bandwidth", "0", "", "1.4 MHz, 6 RB", kClause},
      {"LTE CA Status", "ul_bandwidth", "3", "", "10 MHz, 50 RB", kClause},
      {"GSM LTE Neighbor Cell Meas", "bandwidth", "5", "", "20 MHz, 100 RB", kClause},
      {"GSM LTE Neighbor Cell Meas", "bandwidth", "6", "", "", ""},
      {"GSM LTE Neighbor Cell Meas", "bandwidth", "50", "", "", ""},
  };
  expectTold(kRows);
}

TEST(Annotations, TellThePartsOfAnIdentity) {
  constexpr Told kRows[] = {
      {"LTE Serving Cell Meas", "phy_cell_id", "0", "", "N_ID(1) 0, N_ID(2) 0",
       "3GPP TS 36.211, 6.11"},
      {"LTE CA Status", "pci", "301", "", "N_ID(1) 100, N_ID(2) 1", "3GPP TS 36.211, 6.11"},
      {"LTE LTE Neighbor Cell Meas", "nbr_phys_cell_id", "503", "", "N_ID(1) 167, N_ID(2) 2",
       "3GPP TS 36.211, 6.11"},
      {"LTE CA Status", "pci", "504", "", "", ""},
      {"LTE Serving Cell Info", "cell_id", "28434433", "", "eNB 111072, cell 1 (macro eNB)",
       "3GPP TS 36.413, 9.2.1.37"},
      {"LTE Serving Cell Info", "cell_id", "268435455", "", "eNB 1048575, cell 255 (macro eNB)",
       "3GPP TS 36.413, 9.2.1.37"},
      {"LTE Serving Cell Info", "cell_id", "268435456", "", "", ""},
      {"UMTS Serving Cell Info", "cell_id", "65535", "", "", ""},
      {"UMTS Serving Cell Info", "cell_id", "65536", "", "RNC 1, cell 0 (RNC-ID of 12 bits)",
       "3GPP TS 25.331, 10.3.2.2"},
      {"UMTS Serving Cell Info", "cell_id", "268435455", "",
       "RNC 4095, cell 65535 (RNC-ID of 12 bits)", "3GPP TS 25.331, 10.3.2.2"},
      {"UMTS Serving Cell Info", "cell_id", "268435456", "", "", ""},
      {"GSM Serving Cell Info", "bsic", "0", "", "NCC 0, BCC 0", "3GPP TS 23.003, 4.3.2"},
      {"GSM Serving Cell Info", "bsic", "35", "", "NCC 4, BCC 3", "3GPP TS 23.003, 4.3.2"},
      {"UMTS GSM Neighbor Cell Meas", "bsic", "63", "", "NCC 7, BCC 7", "3GPP TS 23.003, 4.3.2"},
      {"GSM Serving Cell Info", "bsic", "64", "", "", ""},
      {"Device Info SIM Files", "ef_id", "28423", "", "hexadecimal 6F07", "ETSI TS 102 221, 8.2"},
      {"Device Info SIM Files", "ef_id", "12258", "", "hexadecimal 2FE2", "ETSI TS 102 221, 8.2"},
      {"Device Info SIM Files", "ef_id", "65536", "", "", ""},
  };
  expectTold(kRows);
}

TEST(Annotations, TellWhatACauseOrStateStandsFor) {
  constexpr Told kRows[] = {
      {"LTE RRC State", "cause", "KLTE_RRC_CAUSE_REL_T310_EXP", "",
       "T310 expired: N310 out of sync, then no N311 in sync in time", "3GPP TS 36.331, 7.3"},
      {"LTE RRC State", "cause", "KLTE_RRC_CAUSE_EST_MT_ACC", "", "establishment cause mt-Access",
       "3GPP TS 36.331, 6.2.2"},
      {"LTE RRC State", "cause", "KLTE_RRC_CAUSE_NA", "", "", ""},
      {"LTE RRC State", "cause", "(unknown: 99)", "", "", ""},
      {"LTE NAS", "update_status", "EPS_STATUS_NOT_UPDATED", "", "EU2", "3GPP TS 24.301, 5.1.3.3"},
      {"LTE NAS", "ue_op_mode", "EPS_UE_OP_MODE_CSPS_MODE_2", "", "EPS and non-EPS, data centric",
       "3GPP TS 24.301, 4.3"},
      {"UMTS NAS GMM", "update_status", "GPRS_STATUS_UPDATED", "", "GU1",
       "3GPP TS 24.008, 4.1.3.2"},
      {"GSM NAS MM", "update_status", "STATUS_ROAMING_NOT_ALLOWED", "", "U3",
       "3GPP TS 24.008, 4.1.2.2"},
      {"GSM NAS MM", "update_status", "STATUS_UPDATE_DISABLED", "", "", ""},
      {"UMTS NAS MM", "proc_failure_cause", "KNAS_MM_PROC_FAILURE_CAUSE_T3210_EXPIRY", "",
       "T3210: LOCATION UPDATING REQUEST unanswered", "3GPP TS 24.008, 11.2"},
      {"LTE C-DRX", "transmission_mode", "3", "", "large delay CDD", "3GPP TS 36.213, 7.1"},
      {"LTE C-DRX", "transmission_mode", "0", "", "", ""},
      {"LTE C-DRX", "transmission_mode", "11", "", "", ""},
  };
  expectTold(kRows);
}

TEST(Annotations, StandBesideNoPlaceholderAndNoText) {
  for (const AnnotationRow& row : annotationRows())
    for (const char* text : {"", " ", "-", "Waiting for Update", "Come Back Later", "12 dB", " 12",
                             "12 ", "0x10", "+5", "nan", "inf", "<0a>", "[1, 2]", "(unknown: 7)"})
      EXPECT_EQ(annotationFor(row.page, row.key, text), Annotation()) << row.key << " " << text;
}

TEST(Annotations, BelongToTheirPageAndKeyOnly) {
  for (const auto& [page, key] : std::initializer_list<std::pair<const char*, const char*>>{
           {"LTE Serving Cell Meas", "rsrp"},
           {"LTE Serving Cell Meas", "RSRP0"},
           {"LTE Serving Cell Meas", ""},
           {"lte Serving Cell Meas", "rsrp0"},
           {"Serving Cell Meas", "rsrp0"},
           {"", "rsrp0"},
           {"NAS MM", "t3212_dur_s"},
           {"LTE NAS", "t3212_dur_s"},
           {"UMTS UMTS Neighbor Cell Meas", "rxlev"},
           {"LTE RRC State", "timestamp"},
           {"GSM Idle Config", "radio_link_timeout"}})
    EXPECT_EQ(annotationFor(page, key, "5"), Annotation()) << page << ", " << key;
}

/// A message with every field that its table has, as `wire` takes it.
std::string everyField(const MessageTable& table) {
  static const std::map<Kind, std::string> kValues = {
      {Kind::uint64, "1"},   {Kind::uint32, "1"},         {Kind::enumeration, "1"},
      {Kind::sint32, "~-1"}, {Kind::boolean, "1"},        {Kind::bytes, "<01>"},
      {Kind::string, "'a'"}, {Kind::packedUint32, "[1]"}, {Kind::packedSint32, "[~-1]"},
  };
  std::string fields;
  for (const Field& field : table.fields)
    fields += std::to_string(field.number) + ":" +
              (field.element ? "{" + everyField(*field.element) + "}" : kValues.at(field.kind)) +
              " ";
  return fields;
}

using KeysOfPages = std::map<std::string, std::set<std::string>, std::less<>>;

/// The keys that each page of the tree shows with a value, once every metric came with every field.
KeysOfPages shownKeys() {
  Intake intake;
  for (const CatalogueRow& row : catalogue())
    if (metricCase(row.metricID)) (void)intake.handle(row.metricID, everyField(*row.table));
  KeysOfPages keys;
  const PageTree tree = buildPageTree();
  for (const auto& [technology, categories] : tree.categories)
    for (const std::string& category : categories) {
      auto& ofPage = keys[technology + " " + category];
      for (const SectionContents& section : contentsOf(*pageOf(technology, category)))
        for (const auto& row : section.rows)
          if (!row.detail.empty()) ofPage.insert(row.text);
    }
  return keys;
}

/// The rows that stand for a page that does not show their key, or for no page.
std::vector<std::string> rowsBesideNothing(std::span<const AnnotationRow> rows,
                                           const KeysOfPages& keys) {
  std::vector<std::string> found;
  for (const AnnotationRow& row : rows) {
    bool isOnAPage = false;
    bool isOnEach = true;
    for (const auto& [page, ofPage] : keys) {
      if (!covers(row, page)) continue;
      isOnAPage = true;
      isOnEach = isOnEach && ofPage.contains(std::string(row.key));
    }
    if (!isOnAPage || !isOnEach)
      found.push_back(std::string(row.page) + ", " + std::string(row.key));
  }
  return found;
}

TEST(Annotations, StandOnlyBesideKeysThatTheirPagesShow) {
  const KeysOfPages keys = shownKeys();
  ASSERT_EQ(keys.size(), 43U);
  EXPECT_THAT(keys.at("LTE RRC State"), Contains("prev_state_dur_ms"));
  EXPECT_THAT(rowsBesideNothing(annotationRows(), keys), IsEmpty());
}

TEST(Annotations, BesideAKeyThatNoPageShowsAreFound) {
  constexpr AnnotationRow kWrong[] = {
      {"LTE RRC State", "prev_state_dur_ms", "ms"},
      {"LTE RRC State", "prev_state_dur", "ms"},
      {"LTE RRC", "prev_state_dur_ms", "ms"},
      {"UMTS Serving Cell Meas", "rssi", "dBm"},
      {"UMTS Serving Cell Measurement", "rssi", "dBm"},
      {"GSM Idle Config", "cr_offset", "dB"},
      {"LTE Sel Resel Parameters", "Thresh_serving_lowQ", "dB"},
      {"* UMTS Neighbor Cell Meas", "rscp", "dBm"},
      {"* NAS", "t3412_dur_s", "s"},
      {"* CA", "rsrp", "dBm"},
  };
  EXPECT_THAT(
      rowsBesideNothing(kWrong, shownKeys()),
      ElementsAre("LTE RRC State, prev_state_dur", "LTE RRC, prev_state_dur_ms",
                  "UMTS Serving Cell Meas, rssi", "UMTS Serving Cell Measurement, rssi",
                  "GSM Idle Config, cr_offset", "LTE Sel Resel Parameters, Thresh_serving_lowQ",
                  "* UMTS Neighbor Cell Meas, rscp", "* CA, rsrp"));
}

TEST(Annotations, AreOneForEachRowOfAPageAndSaySomething) {
  for (const AnnotationRow& row : annotationRows()) {
    EXPECT_TRUE(!row.unit.empty() || row.reading) << row.page << ", " << row.key;
    EXPECT_TRUE(row.clause.empty() || !row.reading) << row.page << ", " << row.key;
    for (const AnnotationRow& other : annotationRows())
      EXPECT_TRUE(&row == &other || row.key != other.key ||
                  (!covers(row, other.page) && !covers(other, row.page) && row.page != other.page))
          << row.page << ", " << row.key;
  }
}

TEST(Readings, KnowEachOfTheirSamplesOnce) {
  std::set<const Reading*> readings;
  for (const AnnotationRow& row : annotationRows())
    if (row.reading) readings.insert(row.reading);
  EXPECT_EQ(readings.size(), 25U);
  for (const Reading* reading : readings) {
    EXPECT_FALSE(reading->clause.empty()) << reading->title;
    std::set<std::string> values;
    for (const std::string& value : samplesOf(*reading)) {
      EXPECT_TRUE(meaningOf(*reading, value)) << reading->title << " " << value;
      if (!std::holds_alternative<NamedValues>(reading->rule)) continue;
      EXPECT_TRUE(values.insert(value).second) << reading->title << " " << value;
    }
  }
}

TEST(Readings, KeepTheEarfcnsOfTheBandsApart) {
  for (const Reading* reading : {&kEarfcnDownlink, &kEarfcnUplink}) {
    int next = 0;
    for (const ChannelRange& range : std::get<ChannelRanges>(reading->rule)) {
      EXPECT_GE(range.first, next) << reading->title << ", " << range.band;
      EXPECT_GE(range.last, range.first) << reading->title << ", " << range.band;
      EXPECT_EQ(range.step, 1) << reading->title << ", " << range.band;
      next = range.last + 1;
    }
  }
}

TEST(Readings, NameOnlyValuesThatTheMessagesHave) {
  std::set<std::string_view> names;
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      for (const EnumName& name : field.names.names) names.insert(name.name);
  for (const AnnotationRow& row : annotationRows()) {
    const auto* named = row.reading ? std::get_if<NamedValues>(&row.reading->rule) : nullptr;
    if (!named) continue;
    for (const NamedValue& value : *named)
      EXPECT_TRUE(numberIn(value.value) || names.contains(value.value)) << value.value;
  }
}

/// A page's annotations, a line each: "key=detail | unit | meaning | clause".
std::string annotated(UITableViewController& page) {
  std::string lines;
  for (const SectionContents& section : contentsOf(page))
    for (const auto& row : section.rows)
      if (row.annotation != Annotation())
        lines += row.text + "=" + row.detail + " | " + row.annotation.unit + " | " +
                 row.annotation.meaning + " | " + std::string(row.annotation.clause) + "\n";
  return lines;
}

TEST(SecondLevelViewController, ExplainsARowOfEachTechnology) {
  const Intake intake;
  handleSampleMetrics();
  EXPECT_EQ(annotated(*pageOf("Device Info", "SIM Files")),
            "ef_id=12258 |  | hexadecimal 2FE2 | ETSI TS 102 221, 8.2\n"
            "ef_id=28435 |  | hexadecimal 6F13 | ETSI TS 102 221, 8.2\n");
  EXPECT_EQ(annotated(*pageOf("LTE", "LTE Neighbor Cell Meas")),
            "nbr_earfcn=6300 |  | 806 MHz, band 20 | 3GPP TS 36.101, 5.7.3\n"
            "nbr_phys_cell_id=77 |  | N_ID(1) 25, N_ID(2) 2 | 3GPP TS 36.211, 6.11\n"
            "nbr_rsrp=-98 | dBm |  | 3GPP TS 36.214, 5.1.1\n"
            "nbr_rsrq=-10.5 | dB |  | 3GPP TS 36.214, 5.1.3\n"
            "nbr_phys_cell_id=78 |  | N_ID(1) 26, N_ID(2) 0 | 3GPP TS 36.211, 6.11\n"
            "nbr_rsrq=-10.0 | dB |  | 3GPP TS 36.214, 5.1.3\n");
  EXPECT_EQ(annotated(*pageOf("UMTS", "UMTS Neighbor Cell Meas")),
            "uarfcn=10713 |  | 2142.6 MHz, band I | 3GPP TS 25.101, 5.4.3\n"
            "ecno=6.5 |  | -18 ≤ Ec/No < -17.5 dB | 3GPP TS 25.133, 9.1.2.3\n"
            "rscp=-92 | dBm |  | 3GPP TS 25.215, 5.1.1\n");
  EXPECT_EQ(annotated(*pageOf("GSM", "LTE Neighbor Cell Meas")),
            "physical_cell_id=301 |  | N_ID(1) 100, N_ID(2) 1 | 3GPP TS 36.211, 6.11\n"
            "rsrp=41 |  | -100 ≤ RSRP < -99 dBm | 3GPP TS 36.133, 9.1.4\n"
            "earfcn=6300 |  | 806 MHz, band 20 | 3GPP TS 36.101, 5.7.3\n"
            "rsrq=8.5 |  | -11.5 ≤ RSRQ < -11 dB | 3GPP TS 36.133, 9.1.7\n");
}

TEST(SecondLevelViewController, ExplainsNothingWhereThereIsNothing) {
  const Intake intake;
  const PageTree tree = buildPageTree();
  for (const auto& [technology, categories] : tree.categories)
    for (const std::string& category : categories)
      EXPECT_EQ(annotated(*pageOf(technology, category)), "") << technology << " " << category;
}

TEST(SecondLevelViewController, LeavesTheTextsOfARowThatItExplains) {
  const Intake intake;
  handleSampleMetrics();
  const PageTree tree = buildPageTree();
  for (const auto& [technology, categories] : tree.categories)
    for (const std::string& category : categories) {
      const auto page = pageOf(technology, category);
      UITableView& table = page->tableView();
      for (std::ptrdiff_t i = 0; i < page->numberOfSectionsInTableView(table); ++i)
        for (std::ptrdiff_t row = 0; row < page->numberOfRowsInSection(table, i); ++row) {
          const Cell before = page->cellForRowAtIndexPath(table, {i, row});
          (void)page->annotationForRowAtIndexPath(table, {i, row});
          const Cell after = page->cellForRowAtIndexPath(table, {i, row});
          EXPECT_EQ(before->textLabel()->text(), after->textLabel()->text());
          EXPECT_EQ(before->detailTextLabel()->text(), after->detailTextLabel()->text());
        }
    }
}

TEST(SecondLevelViewController, ExplainsTheRowsOfItsSnapshot) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{11:~-9800} 2:{11:~-9900}");
  const auto page = pageOf("LTE", "CA Status");
  UITableView& table = page->tableView();
  EXPECT_EQ(page->numberOfSectionsInTableView(table), 2);
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:0}");
  EXPECT_EQ(page->annotationForRowAtIndexPath(table, {1, 0}).unit, "dBm");
  EXPECT_EQ(page->numberOfSectionsInTableView(table), 1);
  EXPECT_EQ(page->annotationForRowAtIndexPath(table, {0, 0}), Annotation());
  EXPECT_DEATH((void)page->annotationForRowAtIndexPath(table, {1, 0}), "");
  EXPECT_EQ(pageOf("Device Info", "IMSI")->annotationForRowAtIndexPath(table, {0, 0}),
            Annotation());
}

}  // namespace
}  // namespace quorin::test
