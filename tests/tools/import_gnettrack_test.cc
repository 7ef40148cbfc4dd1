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

TEST(GnettrackImport, TakesWhatItsFieldCanHaveAndNothingBeyond) {
  struct {
    const char* technology;
    const char* column;
    std::vector<const char*> taken;
    std::vector<const char*> beyond;
    const char* broken = nullptr;  // where the field has whole numbers only
  } const rows[] = {
      {"4G", "PSC", {"0", "503"}, {"-1", "504"}, "2.5"},
      {"4G", "ARFCN", {"0", "262143"}, {"-1", "262144"}, "2.5"},
      {"4G", "LAC", {"1", "65533"}, {"0", "65534"}, "2.5"},
      {"4G", "BAND", {"L1", "L256"}, {"L0", "L257", "L2.5", "U1"}},
      {"4G", "Level", {"-139", "-45", "-112", "-114", "-50", "-52"}, {"-140", "-44", "-113", "-51"}},
      {"4G", "Qual", {"-34", "3"}, {"-35", "4"}},
      {"4G", "SNR", {"-30", "50"}, {"-30.5", "50.5"}},
      {"3G", "LAC", {"1", "65533"}, {"0", "65534"}, "2.5"},
      {"3G", "ARFCN", {"0", "16383"}, {"-1", "16384"}, "2.5"},
      {"3G", "PSC", {"0", "511"}, {"-1", "512"}, "2.5"},
      {"3G", "Level", {"-119", "-25", "-112", "-114", "-50", "-52"}, {"-120", "-24", "-113", "-51"}},
      {"2G", "LAC", {"1", "65533"}, {"0", "65534"}, "2.5"},
      {"2G", "CellID", {"0", "65535"}, {"-1", "65536"}, "2.5"},
      {"2G", "ARFCN", {"0", "1023"}, {"-1", "1024"}, "2.5"},
      {"2G", "PSC", {"0", "63"}, {"-1", "64"}, "2.5"},
      {"2G", "Level", {"-112", "-49", "-50", "-52"}, {"-113", "-48", "-51"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.technology) + " " + row.column);
    const auto read = [&](const char* value) {
      return import(std::string("Timestamp\tNetworkTech\t") + row.column +
                    "\n1970.01.01_00.00.01\t" + row.technology + "\t" + value + "\n");
    };
    for (const char* value : row.taken)
      EXPECT_THAT(read(value).events, SizeIs(1)) << value;
    for (const char* value : row.beyond) {
      EXPECT_THAT(read(value).events, IsEmpty()) << value;
      EXPECT_EQ(read(value).exitCode, 0) << value;
    }
    if (row.broken) {
      EXPECT_EQ(read(row.broken).exitCode, 1) << row.broken;
    }
  }
}

TEST(GnettrackImport, JoinsWhatItsPartsCanHaveAndNothingBeyond) {
  struct {
    const char* technology;
    const char* node;
    const char* cell;
    std::vector<std::string> events;
  } const rows[] = {
      {"4G", "1048575", "255", {"KCellularLteScellInfo {\"cell_id\":268435455}"}},
      {"4G", "1048576", "255", {}},
      {"4G", "1048575", "256", {}},
      {"3G", "4095", "65535", {"KCellularWcdmaCellInfo {\"cell_id\":268435455}"}},
      {"3G", "4096", "65535", {}},
      {"3G", "4095", "65536", {}},
  };
  const auto log = [](std::string technology, std::string node, std::string cell) {
    return "Timestamp\tNetworkTech\tNode\tCellID\n1970.01.01_00.00.01\t" + technology + "\t" +
           node + "\t" + cell + "\n";
  };
  for (const auto& row : rows)
    EXPECT_EQ(events(log(row.technology, row.node, row.cell)), row.events)
        << row.technology << " " << row.node << " " << row.cell;
  for (const char* technology : {"4G", "3G"}) {
    EXPECT_EQ(import(log(technology, "7", "2.5")).exitCode, 1) << technology << ", half a cell";
    EXPECT_EQ(import(log(technology, "2.5", "7")).exitCode, 1) << technology << ", half a node";
  }
}

TEST(GnettrackImport, KnowsTheBandsThatItsLettersName) {
  const std::pair<const char*, const char*> rows[] = {
      {"3G\tU1", "SYS_BAND_WCDMA_I_IMT_2000"},  {"3G\tU2", "SYS_BAND_WCDMA_II_PCS_1900"},
      {"3G\tU3", "SYS_BAND_WCDMA_III_1700"},    {"3G\tU4", "SYS_BAND_WCDMA_IV_1700"},
      {"3G\tU5", "SYS_BAND_WCDMA_V_850"},       {"3G\tU6", "SYS_BAND_WCDMA_VI_800"},
      {"3G\tU7", "SYS_BAND_WCDMA_VII_2600"},    {"3G\tU8", "SYS_BAND_WCDMA_VIII_900"},
      {"3G\tU9", "SYS_BAND_WCDMA_IX_1700"},     {"3G\tU11", "SYS_BAND_WCDMA_XI_1500"},
      {"3G\tU19", "SYS_BAND_WCDMA_XIX_850"},    {"2G\tG850", "SYS_BAND_GSM_850"},
      {"2G\tG1800", "SYS_BAND_GSM_DCS_1800"},   {"2G\tG1900", "SYS_BAND_GSM_PCS_1900"},
  };
  for (const auto& [cells, name] : rows)
    EXPECT_THAT(events(std::string("Timestamp\tNetworkTech\tBAND\n1970.01.01_00.00.01\t") + cells +
                       "\n"),
                ElementsAre(EndsWith("\"" + std::string(name) + "\"}")))
        << cells;
  EXPECT_THAT(events("Timestamp\tNetworkTech\tBAND\n1970.01.01_00.00.01\t2G\tG900\n"), IsEmpty());
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
