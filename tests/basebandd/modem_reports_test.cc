#include "basebandd/modem/reports.h"

#include "messages/catalogue.h"
#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using namespace modem;
using modem::Reading;

constexpr std::int64_t kGsmAccess = 1 << 1;
constexpr std::int64_t kUmtsAccess = 1 << 5;
constexpr std::int64_t kLteAccess = 1 << 14;
constexpr std::int64_t kNrAccess = 1 << 15;

Reading text(const char* text) { return {std::string(text)}; }
Reading number(std::int64_t number) { return {number}; }

/// What the readings give as this metric, in its printed form; empty: nothing.
std::string given(std::int64_t metricID, const ModemReadings& readings) {
  const auto row = std::ranges::find(reports(), metricID, &Report::metricID);
  const Ref<Data> payload = row->make(readings, std::nullopt);
  if (!payload) return "";
  const Ref<AnyMessage> message = catalogueRow(metricID)->table->make();
  PBDataReader reader(payload->bytes());
  EXPECT_TRUE(message->readFrom(reader));
  return printed(message->dictionaryRepresentation());
}

ModemReadings campedOn(std::int64_t accessBits, std::int64_t registrationState = 1) {
  ModemReadings readings;
  readings.modem = {{"AccessTechnologies", number(accessBits)},
                    {"CurrentCapabilities", number(1 << 2 | 1 << 3)},
                    {"Bearers", {std::vector<Reading>{}}}};
  readings.network = {{"RegistrationState", number(registrationState)},
                      {"OperatorCode", text("26201")},
                      {"EpsUeModeOperation", number(2)}};
  return readings;
}

std::vector<Readings> cellsOfAll(std::int64_t servingType) {
  std::vector<Readings> cells = {
      {{"cell-type", number(5)},
       {"earfcn", number(1300)},
       {"physical-ci", text("64")},
       {"rsrp", {-90.0}},
       {"rsrq", {-10.0}}},
      {{"cell-type", number(3)}, {"uarfcn", number(10562)}, {"psc", number(7)}, {"rscp", {-85.0}}},
      {{"cell-type", number(2)}, {"arfcn", number(62)}, {"rx-level", number(30)}}};
  Readings serving = {{"cell-type", number(servingType)},
                      {"serving", {true}},
                      {"operator-id", text("26201")},
                      {"ci", text("101")},
                      {"earfcn", number(6300)},
                      {"physical-ci", text("21")},
                      {"tac", text("7D1")},
                      {"uarfcn", number(2950)},
                      {"arfcn", number(700)},
                      {"lac", text("3E9")}};
  cells.insert(cells.begin() + 1, serving);
  return cells;
}

TEST(ModemReports, GiveTheServingCellAndTheNeighboursOfLte) {
  ModemReadings readings = campedOn(kLteAccess);
  readings.cells = cellsOfAll(5);
  EXPECT_EQ(given(K_LTE_SCELL_INFO, readings),
            "[phy_cell_id: 33, dl_freq: 6300, ul_freq: 24300, cell_id: 257, freq_band_ind: 20, "
            "tracking_area_code: 2001, num_mnc_digits: 2, sel_plmn_mcc: 262, sel_plmn_mnc: 1]");
  EXPECT_EQ(given(K_LTE_INTRARAT_MEAS, readings),
            "[meas_nbr_eutra: [[nbr_earfcn: 1300, nbr_phys_cell_id: 100, freq_band_ind: 3, "
            "nbr_rsrp: -90, nbr_rsrq: -20]]]");
  EXPECT_EQ(given(K_LTE_INTERRAT_MEAS, readings),
            "[meas_nbr_utra: [[uarfcn: 10562, psc: 7, rscp: -85]], "
            "meas_nbr_geran: [[arfcn: 62, rxlev: 30]]]");
  for (const std::int64_t other :
       {K_UMTS_SCELL_INFO, K_UMTS_NCELL_MEAS, K_GSM_SCELL_INFO, K_GSM_NCELL_MEAS})
    EXPECT_EQ(given(other, readings), "") << other;
}

TEST(ModemReports, GiveTheServingCellAndTheNeighboursOfUmts) {
  ModemReadings readings = campedOn(kUmtsAccess);
  readings.cells = cellsOfAll(3);
  EXPECT_EQ(given(K_UMTS_SCELL_INFO, readings),
            "[mcc: 262, mnc: 1, lac: 1001, cell_id: 257, wcdma_band: SYS_BAND_WCDMA_VIII_900, "
            "dl_uarfcn: 2950, num_mnc_digits: 2]");
  EXPECT_EQ(given(K_UMTS_NCELL_MEAS, readings),
            "[meas_utra_result: [[uarfcn: 10562, band: 1, psc: 7, rscp: -85]], "
            "meas_gsm_result: [[arfcn: 62, rxlev: 30]], "
            "meas_lte_result: [[earfcn: 1300, phy_cell_id: 100, eutra_band: 3, rsrp: -90, "
            "rsrq: -20]]]");
}

TEST(ModemReports, GiveTheServingCellAndTheNeighboursOfGsm) {
  ModemReadings readings = campedOn(kGsmAccess);
  readings.cells = cellsOfAll(2);
  EXPECT_EQ(given(K_GSM_SCELL_INFO, readings),
            "[mcc: 262, mnc: 1, lac: 1001, cell_id: 257, arfcn: 700, num_mnc_digits: 2]")
      << "700 is DCS 1800's and PCS 1900's";
  EXPECT_EQ(given(K_GSM_NCELL_MEAS, readings),
            "[gsm_ncell_meas: [[arfcn: 62, rxlev: 30]], "
            "umts_ncell_meas: [[cpich_sc: 7, dl_uarfcn: 10562, cpich_rscp: 31]], "
            "lte_ncell_meas: [[physical_cell_id: 100, rsrp: 51, earfcn: 1300, rsrq: 20]]]");
}

TEST(ModemReports, TakeTheIdentitiesOfACellThatIsNotListedFromTheRegistration) {
  ModemReadings readings = campedOn(kLteAccess);
  EXPECT_EQ(given(K_LTE_SCELL_INFO, readings),
            "[num_mnc_digits: 2, sel_plmn_mcc: 262, sel_plmn_mnc: 1]");
  readings.area = areaOf("262,01,FFFE,1CEAD8F,7D1");
  EXPECT_EQ(given(K_LTE_SCELL_INFO, readings),
            "[cell_id: 30322063, tracking_area_code: 2001, num_mnc_digits: 2, sel_plmn_mcc: 262, "
            "sel_plmn_mnc: 1]");
  EXPECT_EQ(given(K_LTE_INTRARAT_MEAS, readings), "") << "no list is not an empty one";
}

TEST(ModemReports, LeaveASecondaryCellOutOfServingAndNeighbours) {
  ModemReadings readings = campedOn(kLteAccess);
  readings.cells = {{{"cell-type", number(5)},
                     {"serving", {true}},
                     {"serving-cell-type", number(2)},
                     {"earfcn", number(1300)}},
                    {{"cell-type", number(5)},
                     {"serving", {true}},
                     {"serving-cell-type", number(1)},
                     {"earfcn", number(6300)}}};
  EXPECT_THAT(given(K_LTE_SCELL_INFO, readings), ::testing::StartsWith("[dl_freq: 6300"));
  EXPECT_EQ(given(K_LTE_INTRARAT_MEAS, readings), "[:]");
}

TEST(ModemReports, GiveLevelsOfTheTechnologyThatTheModemIsOn) {
  ModemReadings readings = campedOn(kLteAccess);
  readings.cells = cellsOfAll(5);
  readings.signal = {{"Lte", {Readings{{"rsrp", {-95.0}}, {"rssi", {-70.0}}}}},
                     {"Umts", {Readings{{"rssi", {-71.0}}, {"rscp", {-80.0}}}}},
                     {"Gsm", {Readings{{"rssi", {-72.0}}}}}};
  EXPECT_EQ(given(K_LTE_RSRP_RSRQ_SINR, readings),
            "[inst_values: [[phy_cell_id: 33, rsrp0: -95]]]");
  EXPECT_EQ(given(K_UMTS_SCELL_MEAS, readings), "");
  readings.modem["AccessTechnologies"] = number(kUmtsAccess);
  EXPECT_EQ(given(K_UMTS_SCELL_MEAS, readings), "[rx_info: [[rssi: -71]]]");
  readings.modem["AccessTechnologies"] = number(kGsmAccess);
  EXPECT_EQ(given(K_GSM_IDLE_SCELL_MEAS, readings), "[idle_rxlev_dBm: -72]");
  readings.signal["Gsm"] = {Readings{}};
  EXPECT_EQ(given(K_GSM_IDLE_SCELL_MEAS, readings), "");
}

TEST(ModemReports, GiveTheContextsOfTheTechnologyThatTheModemIsOn) {
  ModemReadings readings = campedOn(kLteAccess);
  readings.area = areaOf("262,01,FFFE,1CEAD8F,7D1");
  EXPECT_EQ(given(K_LTE_EMM_CTXT, readings),
            "[reg_status: KREG_STATUS_NORMAL_SERVICE, ue_op_mode: EPS_UE_OP_MODE_PS_MODE_2, "
            "tai_list: [[encoded_plmn: <62f210>, tac: 2001]]]");
  EXPECT_EQ(given(K_CELLULAR_MM_CTXT, readings), "");
  readings.modem["AccessTechnologies"] = number(kUmtsAccess);
  readings.area = areaOf("262,01,3E9,D30156,0");
  EXPECT_EQ(given(K_LTE_EMM_CTXT, readings), "");
  EXPECT_EQ(given(K_CELLULAR_MM_CTXT, readings),
            "[reg_status: KREG_STATUS_NORMAL_SERVICE, lai: [encoded_plmn: <62f210>, lac: 1001]]");
  EXPECT_EQ(given(K_CELLULAR_GMM_CTXT, readings),
            "[reg_status: KREG_STATUS_NORMAL_SERVICE, rai: [encoded_plmn: <62f210>, lac: 1001]]");
}

TEST(ModemReports, GiveNoAreaToWhoIsNotRegistered) {
  ModemReadings readings = campedOn(0, /*registrationState=*/3);
  readings.area = areaOf("262,01,3E9,D30156,7D1");
  EXPECT_EQ(given(K_LTE_EMM_CTXT, readings),
            "[reg_status: KREG_STATUS_REGISTRATION_FAILURE, ue_op_mode: EPS_UE_OP_MODE_PS_MODE_2]");
  EXPECT_EQ(given(K_CELLULAR_MM_CTXT, readings), "[reg_status: KREG_STATUS_REGISTRATION_FAILURE]");
  readings.network["RegistrationState"] = number(4);
  EXPECT_EQ(given(K_LTE_EMM_CTXT, readings), "") << "4: not known";
  EXPECT_EQ(given(K_CELLULAR_MM_CTXT, readings), "");
}

TEST(ModemReports, GiveNothingOfAModemOnNrAlone) {
  ModemReadings readings = campedOn(kNrAccess);
  readings.cells = {{{"cell-type", number(6)}, {"serving", {true}}, {"tac", text("7D1")}}};
  EXPECT_EQ(technologyOf(readings), Technology::nrOnly);
  for (const Report& report : reports()) {
    if (report.groups == kBearerGroup) continue;
    EXPECT_EQ(given(report.metricID, readings), "") << report.metricID;
  }
  EXPECT_EQ(technologyOf(campedOn(kNrAccess | kLteAccess)), Technology::lte);
}

TEST(ModemReports, GiveNothingOfNothing) {
  for (const Report& report : reports())
    EXPECT_EQ(given(report.metricID, ModemReadings{}), "") << report.metricID;
}

TEST(ModemReports, GiveTheCardsFilesThatAreKnown) {
  ModemReadings readings;
  readings.sim = {{"Imsi", text("001010123456789")}, {"SimIdentifier", text("")}};
  EXPECT_EQ(given(K_CELLULAR_MM_INFO, readings), "[imsi: <0910101032547698>]");
  EXPECT_EQ(given(K_SIM_FILE_INFO, readings),
            "[ef_list: [[ef_id: 28423, content: <080910101032547698>]]]");
}

TEST(ModemReports, GiveConnectedBearers) {
  ModemReadings readings = campedOn(kLteAccess);
  EXPECT_EQ(given(K_CELLULAR_ACTIVE_BEARER, readings), "[bearer_context_count: 0]");
  const Reading ipv4 = {Readings{{"method", number(2)},
                                 {"address", text("10.64.0.9")},
                                 {"dns1", text("10.64.0.1")},
                                 {"dns2", text("10.64.0.2")}}};
  const Reading ipv6 = {Readings{{"address", text("2001:db8::9")}, {"dns1", text("2001:db8::53")}}};
  const auto properties = [](const char* apn, std::int64_t type) {
    return Reading{Readings{{"apn", text(apn)}, {"ip-type", number(type)}}};
  };
  readings.bearers = {
      {{"Connected", {true}}, {"Properties", properties("internet", 1)}, {"Ip4Config", ipv4}},
      {{"Connected", {false}}, {"Properties", properties("mms", 1)}, {"Ip4Config", ipv4}},
      {{"Connected", {true}}, {"Properties", properties("ims", 2)}, {"Ip6Config", ipv6}},
      {{"Connected", {true}},
       {"Properties", properties("", 4)},
       {"Ip4Config", ipv4},
       {"Ip6Config", ipv6}},
      {{"Connected", {true}}}};
  EXPECT_EQ(given(K_CELLULAR_ACTIVE_BEARER, readings),
            "[bearer_context_count: 4, bearer_contexts: ["
            "[apn: internet, pdp_type: PDP_TYPE_IPv4, pdp_addr: <0a400009>, "
            "primary_dns_type: PDP_TYPE_IPv4, primary_dns_addr: <0a400001>, "
            "secondary_dns_type: PDP_TYPE_IPv4, secondary_dns_addr: <0a400002>], "
            "[apn: ims, pdp_type: PDP_TYPE_IPv6, pdp_addr: <20010db8000000000000000000000009>, "
            "primary_dns_type: PDP_TYPE_IPv6, "
            "primary_dns_addr: <20010db8000000000000000000000053>], "
            "[pdp_type: PDP_TYPE_IPv4v6, "
            "pdp_addr: <0a40000920010db8000000000000000000000009>, "
            "primary_dns_type: PDP_TYPE_IPv4, primary_dns_addr: <0a400001>, "
            "secondary_dns_type: PDP_TYPE_IPv4, secondary_dns_addr: <0a400002>], [:]]]");
}

TEST(AreaOf, TakesTheTextApart) {
  EXPECT_EQ(
      areaOf("310,260,8BE3,2BAF"),
      (Readings{{"operator-id", text("310260")}, {"lac", text("8BE3")}, {"ci", text("2BAF")}}));
  EXPECT_EQ(areaOf("262,01,0,1A,7D1").at("tac"), text("7D1"));
  EXPECT_EQ(areaOf(""), Readings{});
  EXPECT_EQ(areaOf(",,,,,,"), Readings{});
}

}  // namespace
}  // namespace quorin::test
