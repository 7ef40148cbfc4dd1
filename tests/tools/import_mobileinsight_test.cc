#include "tests/tools/import_rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::string cell(const std::string& rest) {
  return record("LTE_PHY_Serv_Cell_Measurement",
                "\"Subpackets\":{\"Ignored\":{\"Is Serving Cell\":1," + rest + "}}");
}

TEST(MobileInsightImport, FillsTheServingCellAndTheCarrierFromAServingCellRecord) {
  EXPECT_THAT(
      events(record("LTE_RRC_Serv_Cell_Info",
                    R"("Cell ID":185,"Downlink frequency":5780,"Uplink frequency":23780,)"
                    R"("Downlink bandwidth":"10 MHz","Uplink bandwidth":"1.4 MHz",)"
                    R"("Cell Identity":44336657,"TAC":21512,"Band Indicator":17,"MCC":310,)"
                    R"("MNC Digit":3,"MNC":410)")),
      ElementsAre("KCellularLteScellInfo {\"phy_cell_id\":185,\"dl_freq\":5780,\"ul_freq\":23780,"
                  "\"dl_bw\":20,\"ul_bw\":3,\"cell_id\":44336657,\"freq_band_ind\":17,"
                  "\"tracking_area_code\":21512,\"num_mnc_digits\":3,\"sel_plmn_mcc\":310,"
                  "\"sel_plmn_mnc\":410}",
                  "KCellularLteComponentCarrierInfo {\"pcc_earfcn\":5780,\"pcc_bandwidth\":10}"));
}

TEST(MobileInsightImport, GivesTwoAntennasTheirTwoFields) {
  EXPECT_THAT(
      events(cell(R"("Serving Cell Index":"PCell","Physical Cell ID":185,"RSRP Rx[0]":-112.9375,)"
                  R"("RSRP Rx[1]":-109.5,"RSRP":-109.5,"RSRQ Rx[0]":-8.875,"RSRQ Rx[1]":-9.25,)"
                  R"("FTL SNR Rx[0]":4.9,"FTL SNR Rx[1]":-20.0)")),
      ElementsAre("KCellularLteRsrpRsrqSinr {\"inst_values\":[{\"phy_cell_id\":185,\"rsrp0\":-113,"
                  "\"rsrp1\":-110,\"rsrq0\":-9,\"rsrq1\":-9,\"sinr0\":10}]}"));
}

TEST(MobileInsightImport, GivesASecondaryCellToTheCarrierListsInHundredths) {
  EXPECT_THAT(
      events(cell(R"("Serving Cell Index":"1_SCell","E-ARFCN":700,"Physical Cell ID":185,)"
                  R"("RSRP":-107.6875,"RSRQ":-7.1875,"RSSI":-82.8125,"RSRP Rx[0]":-107.0)")),
      ElementsAre("KCellularLteCarrierAggregationStatus {\"scc_list\":[{\"index\":1,"
                  "\"pci\":185,\"dl_earfcn\":700,\"rsrp\":-10769,\"rsrq\":-719,"
                  "\"rssi\":-8281}]}",
                  "KCellularLteSecondaryCellMeasurements {\"scc_rx_measurement\":["
                  "{\"index\":1,\"rsrp\":-10769,\"rsrq\":-719,\"rssi\":-8281}]}"));
}

TEST(MobileInsightImport, GivesThePrimaryCellsMetricBeforeTheSecondaryOnes) {
  EXPECT_THAT(
      events(record("LTE_PHY_Serv_Cell_Measurement",
                    R"("Subpackets":[)"
                    R"({"Is Serving Cell":1,"Serving Cell Index":"1_SCell","RSRP":-107.0},)"
                    R"({"Is Serving Cell":1,"Serving Cell Index":"PCell","RSRP Rx[0]":-112.0}])")),
      ElementsAre("KCellularLteRsrpRsrqSinr {\"inst_values\":[{\"rsrp0\":-112}]}",
                  "KCellularLteCarrierAggregationStatus {\"scc_list\":[{\"index\":1,"
                  "\"rsrp\":-10700}]}",
                  "KCellularLteSecondaryCellMeasurements {\"scc_rx_measurement\":["
                  "{\"index\":1,\"rsrp\":-10700}]}"));
}

TEST(MobileInsightImport, GivesNeighboursTheirCarrierAndRsrqInHalfSteps) {
  EXPECT_THAT(events(record(
                  "LTE_PHY_Connected_Mode_Intra_Freq_Meas",
                  R"*("E-ARFCN":5780,"RSRP(dBm)":-99.5,"Neighbor Cells":[{"Physical Cell ID":210,)*"
                  R"*("RSRP(dBm)":-117.5625,"RSRQ(dB)":-16.0625},{"Physical Cell ID":172}])*")),
              ElementsAre("KCellularLteNbrEutraCellMeas {\"meas_nbr_eutra\":[{\"nbr_earfcn\":5780,"
                          "\"nbr_phys_cell_id\":210,\"nbr_rsrp\":-118,\"nbr_rsrq\":-32},"
                          "{\"nbr_earfcn\":5780,\"nbr_phys_cell_id\":172}]}"));
  EXPECT_THAT(events(record("LTE_PHY_Connected_Mode_Neighbor_Measurement",
                            R"("SubPackets":[{"SubPacket ID":30},{"E-ARFCN":700,"Neighbor Cells":)"
                            R"({"Ignored":{"Physical Cell ID":9,"Inst Measured RSRQ":-30.0}}}])")),
              ElementsAre("KCellularLteNbrEutraCellMeas {\"meas_nbr_eutra\":[{\"nbr_earfcn\":700,"
                          "\"nbr_phys_cell_id\":9}]}"));
}

TEST(MobileInsightImport, ReadsTheGutiAsPrintedAndOnlyWhereItIsValid) {
  const std::string guti =
      R"("EMM State":"EMM_REGISTERED","EMM Substate":"EMM_REGISTERED_PLMN_SEARCH",)"
      R"("GUTI MME Group ID":"0x8001","GUTI MME Code":"0x0e","GUTI M-TMSI":"masked","GUTI Valid":)";
  EXPECT_THAT(events(record("LTE_NAS_EMM_State", guti + "1")),
              ElementsAre("KCellularEmmContext {\"guti\":{\"mmegi\":32769,\"mmec\":14}}"));
  EXPECT_THAT(events(record("LTE_NAS_EMM_State", guti + "0")), IsEmpty());
}

TEST(MobileInsightImport, GivesARegistrationStatusOnlyForAnExactState) {
  const auto status = [](const std::string& state, const std::string& substate) {
    return events(record("LTE_NAS_EMM_State",
                         "\"EMM State\":\"" + state + "\",\"EMM Substate\":\"" + substate + "\""));
  };
  EXPECT_THAT(status("EMM_REGISTERED", "EMM_REGISTERED_NORMAL_SERVICE"),
              ElementsAre("KCellularEmmContext {\"reg_status\":\"KREG_STATUS_NORMAL_SERVICE\"}"));
  EXPECT_THAT(status("EMM_SERVICE_REQUEST_INITIATED", "EMM_REGISTERED_NORMAL_SERVICE"),
              ElementsAre("KCellularEmmContext {\"reg_proc\":\"EMM_PROC_SERV_REQ\"}"));
  EXPECT_THAT(status("EMM_DEREGISTERED", "EMM_DEREGISTERED_ATTACH_NEEDED"), IsEmpty());
}

TEST(MobileInsightImport, TakesOnlyActiveBearers) {
  EXPECT_THAT(
      events(record("LTE_NAS_ESM_State", R"("EPS bearer ID":5,"EPS bearer state":2)")),
      ElementsAre("KCellularActivatedBearerContexts {\"bearer_contexts\":[{\"nsapi\":5}]}"));
  EXPECT_THAT(events(record("LTE_NAS_ESM_State", R"("EPS bearer ID":5,"EPS bearer state":1)")),
              IsEmpty());
}

TEST(MobileInsightImport, PassesOverRecordsThatFillNoMetric) {
  const Import result =
      import(record("LTE_RRC_MIB_Packet", R"("Physical Cell ID":390,"Freq":850)"));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.events, IsEmpty());
}

TEST(MobileInsightImport, NamesAMalformedRecordAndGoesOn) {
  const std::string good = record("LTE_RRC_Serv_Cell_Info", "\"Cell ID\":1");
  const std::string huge(100000, '[');
  const std::pair<std::string, const char*> records[] = {
      {"{\"type_id\":", "not JSON"},
      {huge, "not JSON"},
      {"[]", "not a JSON object"},
      {"{\"type_id\":7}", "no \"type_id\""},
      {"{\"type_id\":\"LTE_RRC_Serv_Cell_Info\"}", "\"timestamp\" is no time"},
      {record("LTE_RRC_Serv_Cell_Info", "\"Cell ID\":[]"), "\"Cell ID\" cannot be read"},
      {record("LTE_PHY_Serv_Cell_Measurement", "\"Subpackets\":[3]"),
       "\"Subpackets\" is no list of objects"},
  };
  for (const auto& [line, reason] : records) {
    const Import result = import(good + line + "\n\n" + good);
    EXPECT_EQ(result.exitCode, 1) << reason;
    EXPECT_THAT(result.events, SizeIs(2)) << reason;
    EXPECT_THAT(result.complaints, EndsWith("drive:2: " + std::string(reason) + "\n"));
  }
}

TEST(MobileInsightImport, TakesWhatItsFieldCanHaveAndNothingBeyond) {
  const auto serving = [](const std::string& rest) { return record("LTE_RRC_Serv_Cell_Info", rest); };
  const auto primary = [](const std::string& rest) {
    return cell("\"Serving Cell Index\":\"PCell\"," + rest);
  };
  const auto secondary = [](const std::string& rest) {
    return cell("\"Serving Cell Index\":\"4_SCell\"," + rest);
  };
  const auto neighbour = [](const std::string& rest) {
    return record("LTE_PHY_Connected_Mode_Intra_Freq_Meas", "\"Neighbor Cells\":[{" + rest + "}]");
  };
  const auto guti = [](const std::string& rest) {
    return record("LTE_NAS_EMM_State", "\"GUTI Valid\":1," + rest);
  };
  const auto bearer = [](const std::string& rest) {
    return record("LTE_NAS_ESM_State", "\"EPS bearer state\":2," + rest);
  };
  const auto fifthBearer = [](const std::string& rest) {
    return record("LTE_NAS_ESM_State", "\"EPS bearer ID\":5," + rest);
  };
  // The value that is taken comes out as the second column says; what lies beyond fills no event.
  struct {
    std::string (*of)(const std::string& rest);
    const char* name;
    std::vector<std::pair<const char*, const char*>> taken;
    std::vector<const char*> beyond;
    const char* broken = nullptr;  // where the field has whole numbers only
  } const rows[] = {
      {serving, "Cell ID", {{"0", "0"}, {"503", "503"}}, {"-1", "504"}, "2.5"},
      {serving, "Uplink frequency", {{"0", "0"}, {"262143", "262143"}}, {"-1", "262144"}, "2.5"},
      {serving, "Uplink bandwidth", {{"1.4", "3"}, {"20", "40"}}, {"1.3", "20.1"}},
      {serving, "Cell Identity", {{"0", "0"}, {"268435455", "268435455"}}, {"-1", "268435456"}, "2.5"},
      {serving, "Band Indicator", {{"1", "1"}, {"256", "256"}}, {"0", "257"}, "2.5"},
      {serving, "TAC", {{"1", "1"}, {"65533", "65533"}}, {"0", "65534"}, "2.5"},
      {serving, "MCC", {{"1", "1"}, {"999", "999"}}, {"0", "1000"}, "2.5"},
      {serving, "MNC", {{"0", "0"}, {"999", "999"}}, {"-1", "1000"}, "2.5"},
      {primary, "RSRP Rx[0]", {{"-179.9", "-180"}, {"0", "0"}}, {"-180", "-180.1", "0.1"}},
      {primary, "RSRQ Rx[1]", {{"-29.9", "-30"}, {"30", "30"}}, {"-30", "-30.1", "30.1"}},
      {primary, "FTL SNR Rx[0]", {{"-19.9", "-40"}, {"60", "120"}}, {"-20", "-20.1", "60.1"}},
      {secondary, "RSRP", {{"-179.9", "-17990"}, {"0", "0"}}, {"-180", "-180.1", "0.1"}},
      {secondary, "RSRQ", {{"-29.9", "-2990"}, {"30", "3000"}}, {"-30", "-30.1", "30.1"}},
      {secondary, "RSSI", {{"-109.9", "-10990"}, {"0", "0"}}, {"-110", "-110.1", "0.1"}},
      {neighbour, "RSRP(dBm)", {{"-179.9", "-180"}, {"0", "0"}}, {"-180", "-180.1", "0.1"}},
      {guti, "GUTI MME Group ID", {{R"("0xffff")", "65535"}}, {R"("0x010000")"}, R"("0xff0")"},
      {guti, "GUTI MME Code", {{R"("0xff")", "255"}}, {R"("0x0100")"}, R"("0xf")"},
      {guti, "GUTI M-TMSI", {{R"("0xffffffff")", "4294967295"}}, {}, R"("0x0100000000")"},
      {bearer, "EPS bearer ID", {{"5", "5"}, {"15", "15"}}, {"4", "16"}, "5.5"},
      {fifthBearer, "EPS bearer state", {{"2", "5"}}, {"1", "3", "2.5"}},
      {neighbour, "RSRQ(dB)", {{"-29.9", "-60"}, {"30", "60"}}, {"-30", "-30.1", "30.1"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto read = [&](const char* value) {
      return import(row.of("\"" + std::string(row.name) + "\":" + value));
    };
    for (const auto& [value, field] : row.taken) {
      const Import result = read(value);
      ASSERT_FALSE(result.events.empty()) << value;
      EXPECT_THAT(result.events[0], HasSubstr(":" + std::string(field) + "}")) << value;
    }
    for (const char* value : row.beyond) {
      const Import result = read(value);
      for (const std::string& event : result.events)
        EXPECT_THAT(event, EndsWith("\"index\":4}]}")) << value << ": its carrier alone";
      EXPECT_EQ(result.exitCode, 0) << value;
    }
    if (row.broken) {
      EXPECT_EQ(read(row.broken).exitCode, 1) << row.broken;
    }
  }
}

TEST(MobileInsightImport, TakesNoNumberThatItsFieldCannotHave) {
  EXPECT_THAT(events(record("LTE_RRC_Serv_Cell_Info",
                            R"("Cell ID":504,"TAC":1e300,"MCC":-5,"Cell Identity":2147483647,)"
                            R"("MNC":18446744073709551615,"Band Indicator":null)")),
              IsEmpty());
}

}  // namespace
}  // namespace quorin::test
