#include "tests/tools/import_rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
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

TEST(MobileInsightImport, TakesNoNumberThatItsFieldCannotHave) {
  EXPECT_THAT(events(record("LTE_RRC_Serv_Cell_Info",
                            R"("Cell ID":504,"TAC":1e300,"MCC":-5,"Cell Identity":2147483647,)"
                            R"("MNC":18446744073709551615,"Band Indicator":null)")),
              IsEmpty());
}

}  // namespace
}  // namespace quorin::test
