#include "metrics/record_rows.h"

#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "metrics/metric_cases.h"
#include "tests/support/intake.h"
#include "tests/support/sample_metrics.h"

namespace quorin::test {
namespace {

struct Member {
  const char* record;
  const char* member;
  const char* source;
  const char* key;    // in the source; empty: the whole
  const char* after;  // its printed form once every sample metric came
};

constexpr Member kMembers[] = {
    {"myLTE", "SelReselCellInfo", "myLTESelReselDict", "",
     "[timestamp: 2023-11-14 22:13:20 UTC, ims_emergency_support: 1, ac_barring_for_emergency: 0, "
     "mo_signalling_ac_barring_factor: 95, mo_signalling_ac_barring_time: , "
     "mo_signalling_ac_barring_for_special_ac: , mo_data_ac_barring_factor: , "
     "mo_data_ac_barring_time: , mo_data_ac_barring_for_special_ac: , QRxLevMin: -64, QQualMin: "
     "-18, Q_hyst: 4, S_non_intra_search_P: , S_non_intra_search_Q: , S_intra_search_P: , "
     "S_intra_search_Q: , Thresh_serving_lowP: , Thresh_serving_lowQ: , priority_operating_freq: "
     "5, "
     "multi_band_info: [3, 7]]"},
    {"myLTE", "EutraNbrs", "myLTESelReselDict", "nbr_eutra",
     "[[earfcn: 1300, Q_rxlev_min: -62, Q_offset: 2, dl_bw: 10.0, priority: 6, frame_type: TDD, "
     "band: 3], [earfcn: 3350, dl_bw: 9]]"},
    {"myLTE", "RsrpRsrqSinr", "myLTERsrpRsrqSinrDict", "inst_values",
     "[[phy_cell_id: 301, rsrp0: -95, rsrp1: -97, rsrq0: -10, rsrq1: -11, sinr0: 12.5, sinr1: "
     "-1.5], [phy_cell_id: 302, sinr0: 0.0]]"},
    {"myLTE", "TxPower", "myLTETxPowerDict", "tx_power_info",
     "[[pucch_tx_power: -20, pusch_tx_power: 15, subframe_index: 9], [pucch_tx_power: -19]]"},
    {"myLTE", "EutraNbrsMeas", "myLTEIntraRatMeasDict", "meas_nbr_eutra",
     "[[nbr_earfcn: 6300, nbr_phys_cell_id: 77, freq_band_ind: 20, nbr_rsrp: -98, nbr_rsrq: "
     "-10.5], [nbr_phys_cell_id: 78, nbr_rsrq: -10.0]]"},
    {"myLTE", "UtraNbrsMeas", "myLTEInterRatMeasDict", "meas_nbr_utra",
     "[[uarfcn: 10713, psc: 305, rscp: -92, ecno: 13.5]]"},
    {"myLTE", "GeraNbrsMeas", "myLTEInterRatMeasDict", "meas_nbr_geran",
     "[[arfcn: 62, bsic: 35, rxlev: 30]]"},
    {"myLTE", "CAStatusList", "myLTECAStatusDict", "scc_list",
     "[[index: 0, state: SCC_STATE_ACTIVATED, pci: 301, dl_bandwidth: 20.0, has_uplink: 1, "
     "ul_bandwidth: 5, rsrp: -112, rsrq: -10.5, snr: 13, rssi: -81], [index: 1, state: "
     "SCC_STATE_CONFIGURED_DEACTIVATED, dl_bandwidth: 1.4, rsrp: 0, rsrq: -0.25], [index: 2, "
     "state: SCC_STATE_DECONFIGURED, dl_bandwidth: 6]]"},
    {"myLTE", "SecondaryCellMeasList", "myLTESecondaryCellMeasDict", "scc_rx_measurement",
     "[[index: 1, rsrp: -99, rsrq: -12.75, snr: 20, rssi: -70], [index: 2]]"},
    {"myLTE", "MMCommonInfo", "myCellularMMCommonInfoDict", "",
     "[[timestamp: 2023-11-14 22:13:20 UTC, imsi: <2926101032547698>, eplmn_list: "
     "[[encoded_plmn: <62f210>]], roaming_flai_list: [[encoded_plmn: <62f220>, lac: 9]]]]"},
    {"myLTE", "IMSI", "myCellularMMCommonInfoDict", "imsi", "262010123456789"},
    {"myUMTS", "rXInfo", "myUMTSCellMeasDict", "rx_info",
     "[[rssi: -67, rsrp_range: 40, rsrq_range: 20, snr: 5, connected_mode: 1], [rssi: -70, "
     "connected_mode: 1]]"},
    {"myUMTS", "TxPower", "myUMTSTxPowerDict", "tx_power_info",
     "[[pucch_tx_power: -12, pusch_tx_power: 7, subframe_index: 4]]"},
    {"myUMTS", "SelReselCellInfo", "myUMTSSelReselDict", "",
     "[timestamp: 2023-11-14 22:13:20 UTC, ims_emergency_support: 1, hsdpa_capable: 1, "
     "edch_capable: 0, duplex_mode: TDD, cell_barred: 0, fach_meas_occ_info_present: 1, s_rxlev: "
     "-30, s_qual: -18, s_intrasearch: 10, s_intersearch: 8, s_search_rat: 4, s_cell_prio: 5, "
     "multi_band_info: [1, 8]]"},
    {"myUMTS", "eUtraNbrs", "myUMTSSelReselDict", "eutra_prio_info",
     "[[earfcn: 6300, prio: 6], [earfcn: 1300, prio: 7]]"},
    {"myUMTS", "utraNbrs", "myUMTSSelReselDict", "utra_prio_info", "[[uarfcn: 10713, prio: 3]]"},
    {"myUMTS", "geraNbrs", "myUMTSSelReselDict", "gsm_prio_info", "[[arfcn: 62, prio: 1]]"},
    {"myUMTS", "eUtraNbrMeas", "myUMTSNbrMeasDict", "meas_lte_result",
     "[[earfcn: 6300, phy_cell_id: 301, eutra_band: 20, rsrp: -101, rsrq: -11.5]]"},
    {"myUMTS", "utraNbrMeas", "myUMTSNbrMeasDict", "meas_utra_result",
     "[[uarfcn: 10713, band: 1, psc: 305, ecno: 6.5, rscp: -92]]"},
    {"myUMTS", "geraNbrMeas", "myUMTSNbrMeasDict", "meas_gsm_result",
     "[[arfcn: 62, bsic: 35, rxlev: 30]]"},
    {"myGSM", "eUtraNbrMeas", "myGSMNbrMeasDict", "lte_ncell_meas",
     "[[physical_cell_id: 301, bandwidth: 50, rsrp: 41, earfcn: 6300, rsrq: 8.5]]"},
    {"myGSM", "utraNbrMeas", "myGSMNbrMeasDict", "umts_ncell_meas",
     "[[cell_type: 1, cpich_sc: 305, dl_uarfcn: 10713, cpich_rscp: 25, cpich_ecn0: 13]]"},
    {"myGSM", "geraNbrMeas", "myGSMNbrMeasDict", "gsm_ncell_meas",
     "[[mcc: 262, mnc: 1, lac: 4660, ci: 7, bsic: 12, arfcn: 77, rxlev: 30], [arfcn: 78, rxlev: "
     "31]]"},
    {"myCommon", "activeBearer", "myCellularActiveBearerDict", "bearer_contexts",
     "[[cid: 1, nsapi: 5, apn: internet, pdp_type: PDP_TYPE_IPv4, pdp_addr: <0a000001>, "
     "is_addr_irat_mobile: 0], [cid: 2, apn: ims, pdp_type: PDP_TYPE_IPv4v6]]"},
    {"myCommon", "simContents", "mySIMFileInfoDict", "ef_list",
     "[[ef_id: 12258, content: <98101032547698103254>], [ef_id: 28435, content: <>]]"},
};

std::string_view nameOf(MetricValidator::Store store) {
  for (const StoreRow& row : storeRows())
    if (row.get == store) return row.name;
  return "";
}

std::string member(const char* record, const char* name) {
  for (const RecordRow& row : recordRows())
    if (row.record == record && row.member == name)
      return printed(valueOf(*MetricValidator::sharedInstance(), row));
  return "no such member";
}

TEST(RecordRows, AreTwentyFiveMembersWithTheirSources) {
  ASSERT_EQ(recordRows().size(), std::size(kMembers));
  for (std::size_t i = 0; i < std::size(kMembers); ++i) {
    const RecordRow& row = recordRows()[i];
    EXPECT_EQ(row.record, kMembers[i].record);
    EXPECT_EQ(row.member, kMembers[i].member);
    EXPECT_EQ(nameOf(row.source), kMembers[i].source);
    EXPECT_EQ(row.key.text, kMembers[i].key);
    EXPECT_EQ(&recordRow(row.in), &row);
  }
}

TEST(RecordRows, RebuildEveryMemberFromItsStoreWithItsConversions) {
  const Intake intake;
  handleSampleMetrics();
  for (const Member& row : kMembers)
    EXPECT_EQ(member(row.record, row.member), row.after) << row.record << "." << row.member;
}

TEST(RecordRows, KeepTheirPlaceholdersUntilTheirOwnMetricComes) {
  const Intake intake;
  std::map<std::string, std::string> before;
  for (const Member& row : kMembers)
    before[std::string(row.record) + row.member] = member(row.record, row.member);
  for (const Member& row : kMembers)
    EXPECT_NE(before[std::string(row.record) + row.member], row.after);
  for (const SampleMetric& sample : sampleMetrics()) {
    (void)intake.validator->isMetricIDValidWithMetricdict(
        {{"kKeyMetricID", Value(sample.id)}, {"kKeyPayload", Value(test::data(sample.payload))}});
    for (const Member& row : kMembers) {
      std::string& seen = before[std::string(row.record) + row.member];
      if (row.source == sample.store) seen = row.after;
      EXPECT_EQ(member(row.record, row.member), seen)
          << row.record << "." << row.member << " after " << sample.messageClass;
    }
  }
}

TEST(RecordRows, ConvertEveryEntryHoweverManyThereAre) {
  const Intake intake;
  for (const int count : {1, 2, 8, 9, 16, 17, 100}) {
    KCellularLteNbrEutraCellMeas message;
    std::string converted;
    for (int i = 0; i < count; ++i) {
      auto neighbour = make<EgwErrcNbrEutraMeas>();
      neighbour->setNbrRsrp(-50 - i);
      if (i % 5 != 3) neighbour->setNbrRsrq(-i);
      message.addMeasNbrEutra(neighbour);
      converted += (i == 0 ? "[nbr_rsrp: " : ", [nbr_rsrp: ") + std::to_string(-50 - i);
      if (i % 5 != 3) converted += ", nbr_rsrq: " + printed(Value(static_cast<float>(-i) * 0.5F));
      converted += "]";
    }
    PBDataWriter writer;
    message.writeTo(writer);
    const Value payload(make<Data>(Bytes(writer.bytes())));
    (void)intake.validator->isMetricIDValidWithMetricdict(
        {{"kKeyMetricID", Value(std::int64_t{K_LTE_INTRARAT_MEAS})}, {"kKeyPayload", payload}});
    EXPECT_EQ(member("myLTE", "EutraNbrsMeas"), "[" + converted + "]");
    EXPECT_EQ(printed(intake.validator->myLTEIntraRatMeasDict()),
              printed(message.dictionaryRepresentation()));
  }
}

TEST(RecordRows, BecomeEmptyWhereTheLatestMessageLacksTheList) {
  Intake intake;
  handleSampleMetrics();
  for (const SampleMetric& sample : sampleMetrics()) (void)intake.handle(sample.id, std::nullopt);
  for (const Member& row : kMembers) {
    if (std::string_view(row.member) == "SelReselCellInfo") continue;
    const char* expected = std::string_view(row.member) == "MMCommonInfo" ? "[[:]]"
                           : std::string_view(row.member) == "IMSI"       ? ""
                                                                          : "[]";
    EXPECT_EQ(member(row.record, row.member), expected) << row.record << "." << row.member;
  }
}

TEST(RecordRows, MakeFixedKeysEmptyTextAgainThatTheLatestMessageLacks) {
  Intake intake;
  handleSampleMetrics();
  (void)intake.handle(K_LTE_SEL_RESEL_INFO, "13:7");
  EXPECT_EQ(
      member("myLTE", "SelReselCellInfo"),
      "[timestamp: , ims_emergency_support: , ac_barring_for_emergency: , "
      "mo_signalling_ac_barring_factor: , mo_signalling_ac_barring_time: , "
      "mo_signalling_ac_barring_for_special_ac: , mo_data_ac_barring_factor: , "
      "mo_data_ac_barring_time: , mo_data_ac_barring_for_special_ac: , QRxLevMin: , QQualMin: "
      ", Q_hyst: 7, S_non_intra_search_P: , S_non_intra_search_Q: , S_intra_search_P: , "
      "S_intra_search_Q: , Thresh_serving_lowP: , Thresh_serving_lowQ: , "
      "priority_operating_freq: , multi_band_info: ]");
  EXPECT_EQ(member("myLTE", "EutraNbrs"), "[]");
  (void)intake.handle(K_UMTS_SEL_RESEL_INFO, "21:3");
  EXPECT_EQ(
      member("myUMTS", "SelReselCellInfo"),
      "[timestamp: , ims_emergency_support: , hsdpa_capable: , edch_capable: , duplex_mode: , "
      "cell_barred: , fach_meas_occ_info_present: , s_rxlev: , s_qual: , s_intrasearch: , "
      "s_intersearch: , s_search_rat: , s_cell_prio: 3, multi_band_info: ]");
}

struct EntryRow {
  const char* record;
  const char* member;
  std::int64_t id;
  const char* fields;
  const char* entries;
};

TEST(RecordRows, ConvertEachKeyOfAnEntryAndLeaveTheOthers) {
  constexpr EntryRow kRows[] = {
      {"myLTE", "EutraNbrs", K_LTE_SEL_RESEL_INFO,
       "21:{6:0} 21:{6:1} 21:{6:2} 21:{6:3} 21:{6:4} 21:{6:5} 21:{6:6} 21:{6:4294967295} 21:{1:1}",
       "[[dl_bw: 1.4], [dl_bw: 3.0], [dl_bw: 5.0], [dl_bw: 10.0], [dl_bw: 15.0], [dl_bw: 20.0], "
       "[dl_bw: 6], [dl_bw: 4294967295], [earfcn: 1]]"},
      {"myLTE", "RsrpRsrqSinr", K_LTE_RSRP_RSRQ_SINR, "15:{11:~7} 15:{10:~-1} 15:{4:~-90 7:~-9}",
       "[[sinr1: 3.5], [sinr0: -0.5], [rsrp0: -90, rsrq0: -9]]"},
      {"myLTE", "CAStatusList", K_LTE_CA_STATUS,
       "2:{11:~-199 12:~-199 14:~199 13:~-199} 2:{12:~0 6:2} 2:{1:3}",
       "[[rsrp: -1, rsrq: -1.99, snr: -199, rssi: 1], [dl_bandwidth: 5.0, rsrq: 0.0], [index: 3]]"},
      {"myLTE", "SecondaryCellMeasList", K_LTE_SECONDARYCELL_MEAS, "2:{2:~-99 5:~99} 2:{3:~-1}",
       "[[rsrp: 0, rssi: 0], [rsrq: -0.01]]"},
      {"myLTE", "EutraNbrsMeas", K_LTE_INTRARAT_MEAS, "2:{4:~-99} 2:{5:~1}",
       "[[nbr_rsrp: -99], [nbr_rsrq: 0.5]]"},
      {"myLTE", "UtraNbrsMeas", K_LTE_INTERRAT_MEAS, "2:{3:~-99} 2:{4:4294967295}",
       "[[rscp: -99], [ecno: 2147483648.0]]"},
      {"myLTE", "GeraNbrsMeas", K_LTE_INTERRAT_MEAS, "3:{3:63}", "[[rxlev: 63]]"},
      {"myUMTS", "eUtraNbrMeas", K_UMTS_NCELL_MEAS, "4:{4:~-99} 4:{5:~-39}",
       "[[rsrp: -99], [rsrq: -19.5]]"},
      {"myUMTS", "utraNbrMeas", K_UMTS_NCELL_MEAS, "2:{5:~-99} 2:{4:49}",
       "[[rscp: -99], [ecno: 24.5]]"},
      {"myUMTS", "geraNbrMeas", K_UMTS_NCELL_MEAS, "3:{3:63}", "[[rxlev: 63]]"},
      {"myGSM", "eUtraNbrMeas", K_GSM_NCELL_MEAS, "4:{3:97} 4:{5:34}",
       "[[rsrp: 97], [rsrq: 17.0]]"},
      {"myGSM", "utraNbrMeas", K_GSM_NCELL_MEAS, "3:{4:91 5:49}",
       "[[cpich_rscp: 91, cpich_ecn0: 49]]"},
      {"myGSM", "geraNbrMeas", K_GSM_NCELL_MEAS, "2:{7:63}", "[[rxlev: 63]]"},
      {"myUMTS", "rXInfo", K_UMTS_SCELL_MEAS, "3:{1:~-67 4:~9} 2:0",
       "[[rssi: -67, snr: 9, connected_mode: 0]]"},
      {"myUMTS", "rXInfo", K_UMTS_SCELL_MEAS, "3:{1:~-67}", "[[rssi: -67]]"},
      {"myUMTS", "rXInfo", K_UMTS_SCELL_MEAS, "2:1", "[]"},
      {"myLTE", "IMSI", K_CELLULAR_MM_INFO, "2:<21261010325476f8>", "26201012345678"},
      {"myLTE", "IMSI", K_CELLULAR_MM_INFO, "2:<2a26101032547698>", "<2a26101032547698>"},
      {"myLTE", "IMSI", K_CELLULAR_MM_INFO, "2:<>", "<>"},
      {"myLTE", "IMSI", K_CELLULAR_MM_INFO, "1:0", ""},
      {"myLTE", "MMCommonInfo", K_CELLULAR_MM_INFO, "2:<29>", "[[imsi: <29>]]"},
  };
  Intake intake;
  for (const EntryRow& row : kRows) {
    (void)intake.handle(row.id, row.fields);
    EXPECT_EQ(member(row.record, row.member), row.entries) << row.record << "." << row.member;
  }
}

TEST(RecordRows, LeaveTheStoreAsTheMessageGaveIt) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{6:5 11:~-11250 12:~-1050}");
  EXPECT_EQ(printed(intake.validator->myLTECAStatusDict()),
            "[scc_list: [[dl_bandwidth: 5, rsrp: -11250, rsrq: -1050]]]");
  (void)intake.handle(K_UMTS_SCELL_MEAS, "2:1 3:{1:~-67}");
  EXPECT_EQ(printed(intake.validator->myUMTSCellMeasDict()),
            "[connected_mode: 1, rx_info: [[rssi: -67]]]");
}

TEST(RecordRows, HaveNoRowForAMemberOfNoRecord) {
  EXPECT_DEATH((void)recordRow(MemberIn(ListIn{nullptr})), "");
}

}  // namespace
}  // namespace quorin::test
