#include "tests/tools/import_rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kEventColumns[] =
    "Timestamp\tNode\tCellID\tLAC\tNetworkTech\tLevel\tQual\tSNR\tEventDetails\tState\n";

std::string event(const std::string& cells) { return kEventColumns + row(cells); }

TEST(GnettrackImport, FillsTheServingCellAndItsQualityFromALteRow) {
  EXPECT_THAT(
      events(log("60801\t21\t11\t7000\t4G\t-81\t-8\t7.5\t2850\t325\tL7")),
      ElementsAre("KCellularLteScellInfo {\"phy_cell_id\":325,\"dl_freq\":2850,\"cell_id\":5387,"
                  "\"freq_band_ind\":7,\"tracking_area_code\":7000,\"num_mnc_digits\":2,"
                  "\"sel_plmn_mcc\":608,\"sel_plmn_mnc\":1}",
                  "KCellularLteRsrpRsrqSinr {\"inst_values\":[{\"phy_cell_id\":325,\"rsrp0\":-81,"
                  "\"rsrq0\":-8,\"sinr0\":15}]}"));
}

TEST(GnettrackImport, FillsTheServingCellAndItsLevelFromAUmtsRow) {
  EXPECT_THAT(
      events(log("310410\t8\t18892\t9000\t3G\t-83\t-7\t-\t3019\t398\tU8")),
      ElementsAre("KCellularWcdmaCellInfo {\"mcc\":310,\"mnc\":410,\"lac\":9000,\"cell_id\":543180,"
                  "\"wcdma_band\":\"SYS_BAND_WCDMA_VIII_900\",\"dl_uarfcn\":3019,\"psc\":398,"
                  "\"num_mnc_digits\":3}",
                  "KCellularWcdmaScellMeasurement {\"rx_info\":[{\"rssi\":-83}]}"));
}

TEST(GnettrackImport, FillsTheServingCellAndItsLevelFromAGsmRow) {
  EXPECT_THAT(
      events(log("60801\t\t31000\t815\t2G\t-77\t-\t-\t700\t21\tG1800")),
      ElementsAre("KCellularGsmScellInfo {\"mcc\":608,\"mnc\":1,\"lac\":815,\"cell_id\":31000,"
                  "\"gsm_band\":\"SYS_BAND_GSM_DCS_1800\",\"arfcn\":700,\"bsic\":21,"
                  "\"num_mnc_digits\":2}",
                  "KCellularGsmIdleScellMeasurement {\"scell_arfcn\":700,\"idle_rxlev_dBm\":-77}"));
}

TEST(GnettrackImport, LeavesOutWhatTheLogDoesNotHold) {
  EXPECT_THAT(events(log("\t\t11\t7000\t4G\t-\t\t--\t\t-1\t")),
              ElementsAre("KCellularLteScellInfo {\"tracking_area_code\":7000}"));
  EXPECT_THAT(events(log("\t\t-1\t\t--\t-200\t-7\t-\t\t\t")), IsEmpty());
}

TEST(GnettrackImport, TakesNoLevelFromAnEndOfItsScale) {
  for (const char* level : {"-113", "-51", "-140", "-200", "-44"})
    EXPECT_THAT(events(log(std::string("\t\t\t7000\t4G\t") + level + "\t\t\t\t\t")), SizeIs(1))
        << level;
  for (const char* level : {"-113", "-51", "-24", "-120", "0"})
    EXPECT_THAT(events(log(std::string("\t\t\t7000\t3G\t") + level + "\t\t\t\t\t")), SizeIs(1))
        << level;
}

TEST(GnettrackImport, TakesNoReadingThatNeverChanges) {
  std::string still = kColumns;
  for (int i = 0; i < 60; ++i) still += row("\t\t\t\t4G\t-90\t\t\t\t\t");
  EXPECT_THAT(events(still), IsEmpty());
  EXPECT_THAT(events(still + row("\t\t\t\t4G\t-91\t\t\t\t\t")), SizeIs(61));
}

TEST(GnettrackImport, TakesSnrForUnsetWhereItIsZeroThroughout) {
  const std::string zero = row("\t\t\t\t4G\t\t\t0.0\t\t\t");
  EXPECT_THAT(events(kColumns + zero), IsEmpty());
  EXPECT_THAT(events(kColumns + zero + row("\t\t\t\t4G\t\t\t-1.0\t\t\t")),
              ElementsAre("KCellularLteRsrpRsrqSinr {\"inst_values\":[{\"sinr0\":0}]}",
                          "KCellularLteRsrpRsrqSinr {\"inst_values\":[{\"sinr0\":-2}]}"));
}

TEST(GnettrackImport, JoinsNoCellIdentityWithoutItsNode) {
  EXPECT_THAT(events(log("\t\t11\t7000\t3G\t\t\t\t\t\t")),
              ElementsAre("KCellularWcdmaCellInfo {\"lac\":7000}"));
  EXPECT_THAT(events(log("\t21\t256\t7000\t4G\t\t\t\t\t\t")),
              ElementsAre("KCellularLteScellInfo {\"tracking_area_code\":7000}"));
}

TEST(GnettrackImport, ReadsAnEventsOwnCellFromItsDetails) {
  EXPECT_THAT(events(event("21\t2\t7000\t4G\t\t\t\t608-01-7000-21-11-2850-325:"
                           "608-01-7000-21-2-1464-265\tD")),
              ElementsAre("KCellularLteScellInfo {\"phy_cell_id\":265,\"dl_freq\":1464,"
                          "\"cell_id\":5378,\"tracking_area_code\":7000,\"num_mnc_digits\":2,"
                          "\"sel_plmn_mcc\":608,\"sel_plmn_mnc\":1}"));
  EXPECT_THAT(events(event("21\t2\t7000\t4G\t\t\t\t608-01-7000-21-11 VOICE SEQUENCE:1\tI")),
              ElementsAre("KCellularLteScellInfo {\"cell_id\":5378,\"tracking_area_code\":7000}"));
}

TEST(GnettrackImport, KnowsAConnectionByACallOrATransferAndNothingByIdle) {
  EXPECT_THAT(events(event("\t\t\t3G\t-80\t\t\t\tVD")),
              ElementsAre("KCellularWcdmaScellMeasurement {\"connected_mode\":true,"
                          "\"rx_info\":[{\"rssi\":-80}]}"));
  EXPECT_THAT(events(event("\t\t\t3G\t-80\t\t\t\tI")),
              ElementsAre("KCellularWcdmaScellMeasurement {\"rx_info\":[{\"rssi\":-80}]}"));
}

TEST(GnettrackImport, MeasuresNoIdleLevelDuringAGsmCall) {
  EXPECT_THAT(events(event("\t\t\t2G\t-80\t\t\t\tV")),
              ElementsAre("KCellularGsmScellInfo {\"state\":\"DEDICATED_STATE\"}"));
  EXPECT_THAT(events(event("\t\t\t2G\t-80\t\t\t\tI")),
              ElementsAre("KCellularGsmScellInfo {\"state\":\"NON_DEDICATED_STATE\"}",
                          "KCellularGsmIdleScellMeasurement {\"idle_rxlev_dBm\":-80}"));
}

TEST(GnettrackImport, FindsColumnsByTheirNames) {
  EXPECT_THAT(
      events("\xEF\xBB\xBFLevel\tNetworkTech\tTimestamp\r\n-83\t3G\t1970.01.01_00.00.01\r\n"),
      ElementsAre("KCellularWcdmaScellMeasurement {\"rx_info\":[{\"rssi\":-83}]}"));
}

TEST(GnettrackImport, NamesAMalformedRowAndGoesOn) {
  const std::string good = row("\t\t\t7000\t4G\t\t\t\t\t\t");
  const std::pair<const char*, const char*> rows[] = {
      {"1970.13.01_00.00.01\t\t\t\t\t4G\t\t\t\t\t\t", "\"Timestamp\" is no time"},
      {"1970.01.01_00.00.01\t\t\t\t\t4G", "fewer columns than the header names"},
      {"1970.01.01_00.00.01\t\t\t\t\t4G\t\t\t\t\t\t\tx", "more columns than the header names"},
      {"1970.01.01_00.00.01\t\t\t\t\t9G\t\t\t\t\t\t", "\"NetworkTech\" is no technology"},
      {"1970.01.01_00.00.01\t\t\t\t\t4G\t-8x\t\t\t\t\t", "\"Level\" cannot be read"},
      {"1970.01.01_00.00.01\t\t\t\t\t4G\tnan\t\t\t\t\t", "\"Level\" cannot be read"},
      {"1970.01.01_00.00.01\t\t\t\t\t4G\t\t\t\t28.5\t\t", "\"ARFCN\" cannot be read"},
      {"1970.01.01_00.00.01\tTest\t\t\t\t4G\t\t\t\t\t\t", "\"Operator\" cannot be read"},
  };
  for (const auto& [line, reason] : rows) {
    const Import result = import(kColumns + good + line + "\n" + good);
    EXPECT_EQ(result.exitCode, 1) << line;
    EXPECT_THAT(result.events, SizeIs(2)) << line;
    EXPECT_THAT(result.complaints, EndsWith("drive:3: " + std::string(reason) + "\n")) << line;
  }
}

}  // namespace
}  // namespace quorin::test
