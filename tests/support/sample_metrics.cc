#include "tests/support/sample_metrics.h"

#include "metrics/MetricValidator.h"
#include "tests/support/rig.h"
#include "tests/support/wire.h"

namespace quorin::test {

namespace {

struct Row {
  std::int64_t id;
  const char* messageClass;
  const char* store;
  const char* logText;
  const char* fields;          // "@": the time stamp, as milliseconds
  const char* logged;          // "@": as text, "#": as milliseconds
  const char* kept = nullptr;  // where it is another
};

constexpr Row kRows[] = {
    {0x3C0013, "KCellularSimCardFiles", "mySIMFileInfoDict", "Received SIM Card File Info is",
     "1:@ 2:{1:12258 2:<98101032547698103254>} 2:{1:28435 2:<>}",
     "[timestamp: @, ef_list: [[ef_id: 12258, content: <98101032547698103254>], "
     "[ef_id: 28435, content: <>]]]"},
    {0x3C2E0C, "KCellularGsmScellInfo", "myGSMScellInfoDict", "Received GSM Serving Cell Info",
     "1:@ 4:262 5:1 6:4660 7:22136 8:44 9:62 10:35 11:2 13:2",
     "[timestamp: @, mcc: 262, mnc: 1, lac: 4660, cell_id: 22136, gsm_band: "
     "SYS_BAND_GSM_EGSM_900, arfcn: 62, bsic: 35, state: NON_DEDICATED_STATE, num_mnc_digits: 2]"},
    {0x3C300C, "KCellularWcdmaCellInfo", "myUMTSCellInfoDict", "Received UMTS Serving Cell Info is",
     "1:@ 4:262 5:2 6:4661 7:22137 8:80 9:10713 10:305 13:2 14:3",
     "[timestamp: @, mcc: 262, mnc: 2, lac: 4661, cell_id: 22137, wcdma_band: "
     "SYS_BAND_WCDMA_I_IMT_2000, dl_uarfcn: 10713, psc: 305, num_mnc_digits: 2, hspa: "
     "SYS_HS_IND_HSDPA_HSUPA_SUPP_CELL]"},
    {0x3C40C2, "KCellularLteScellInfo", "myLTESCellInfoDict", "Current Serving Cell Info is",
     "1:@ 2:301 3:6300 4:24300 5:5 6:4294967291 7:28434433 8:20",
     "[timestamp: @, phy_cell_id: 301, dl_freq: 6300, ul_freq: 24300, dl_bw: 2, ul_bw: -2, "
     "cell_id: 28434433, freq_band_ind: 20]"},
    {0x3C4E04, "KCellularLteRrcState", "myLTERRCStateDict", "Current RRC state is",
     "1:@ 2:3 3:1 4:250 5:4",
     "[timestamp: @, state: KLTE_RRC_STATE_CONNECTED, prev_state: KLTE_RRC_STATE_IDLE, "
     "prev_state_dur_ms: 250, cause: KLTE_RRC_CAUSE_EST_MO_DATA]"},
    {0x3C4E18, "KCellularLteCdrxConfig", "myLTECDRXConfigDict", "Current CDRX Config is",
     "1:@ 2:1 3:10 4:100 7:320 12:3 13:1 14:4",
     "[timestamp: @, cell_status: 1, on_duration_ms: 10, drx_inactivity_ms: 100, "
     "long_drx_cycle_ms: 320, rrc_state: KLTE_RRC_STATE_CONNECTED, cdrx_config_status: 1, "
     "transmission_mode: 4]"},
    {0x3C4F6A, "KCellularLteRsrpRsrqSinr", "myLTERsrpRsrqSinrDict", "Received RSRP RSRQ SINR is :",
     "1:@ 3:'call-7' 15:{1:301 4:~-95 5:~-97 7:~-10 8:~-11 10:~25 11:~-3} 15:{1:302 10:~0}",
     "[timestamp: @, call_id: call-7, inst_values: [[phy_cell_id: 301, rsrp0: -95, rsrp1: -97, "
     "rsrq0: -10, rsrq1: -11, sinr0: 25, sinr1: -3], [phy_cell_id: 302, sinr0: 0]]]"},
    {0x3CD001, "KCellularGsmIdleConfig", "myGSMIdleConfigInfoDict",
     "Received GSM Idle Config Info is", "1:@ 2:62 3:262 4:1 5:4660 6:22136 7:35 14:5 34:1",
     "[timestamp: @, arfcn_bcch: 62, mcc: 262, mnc: 1, lac: 4660, ci: 22136, bsic: 35, "
     "ms_txpwr: 5, si_2_ter_needed: 1]"},
    {0x3CD002, "KCellularGsmIdleScellMeasurement", "myGSMIdleScellMeasDict",
     "Received GSM Idle Serving Cell Meas Info is", "1:@ 2:62 3:1 4:0 5:~-71",
     "[timestamp: @, scell_arfcn: 62, simplified_l1_state: 1, current_antenna: 0, "
     "idle_rxlev_dBm: -71]"},
    {0x3CD003, "KCellularGsmCsRfMeasurement", "myGSMConnRfMeasDict",
     "Received GSM Connected Serving Cell Meas Info is",
     "1:@ 2:62 3:2 4:1 5:[~33 ~-5] 6:48 7:0 8:3",
     "[timestamp: @, scell_arfcn: 62, simplified_l1_state: 2, current_antenna: 1, cs_tx_pwr: "
     "[33, -5], cs_rxlev_sub: 48, cs_rxqual_sub: 0, scell_band: 3]"},
    {0x3CD009, "KCellularGsmGrrEventMeasCr", "myGSMNbrMeasDict",
     "Received GSM Nbr Cell Meas Info is",
     "1:@ 2:{1:262 2:1 3:4660 4:7 5:12 6:77 7:30} 2:{6:78 7:31} 3:{1:1 2:305 3:10713 4:25 5:13} "
     "4:{1:301 2:50 3:41 4:6300 5:17}",
     "[timestamp: @, gsm_ncell_meas: [[mcc: 262, mnc: 1, lac: 4660, ci: 7, bsic: 12, arfcn: 77, "
     "rxlev: 30], [arfcn: 78, rxlev: 31]], umts_ncell_meas: [[cell_type: 1, cpich_sc: 305, "
     "dl_uarfcn: 10713, cpich_rscp: 25, cpich_ecn0: 13]], lte_ncell_meas: [[physical_cell_id: 301, "
     "bandwidth: 50, rsrp: 41, earfcn: 6300, rsrq: 17]]]"},
    {0x3CD00C, "KCellularGsmGprsConfig", "myGSMGPRSConfigDict", "Received GSM GPRS Config Info is",
     "1:@ 2:1 3:7 4:0 5:1", "[timestamp: @, gprs_sup: 1, rac: 7, sp_pg_cy: 0, nco: 1]"},
    {0x3CD102, "KCellularWcdmaScellMeasurement", "myUMTSCellMeasDict",
     "Received UMTS Serving Cell Meas is", "1:@ 2:1 3:{1:~-67 2:40 3:20 4:~5} 3:{1:~-70}",
     "[timestamp: @, connected_mode: 1, rx_info: [[rssi: -67, rsrp_range: 40, rsrq_range: 20, "
     "snr: 5], [rssi: -70]]]"},
    {0x3CD103, "KCellularWcdmaTxPower", "myUMTSTxPowerDict", "Received Tx Power is",
     "1:@ 2:{1:~-12 2:~7 3:4}",
     "[timestamp: @, tx_power_info: [[pucch_tx_power: -12, pusch_tx_power: 7, subframe_index: "
     "4]]]"},
    {0x3CD104, "KCellularWcdmaSelReselCellInfo", "myUMTSSelReselDict",
     "Received UMTS Cell Resel Info is",
     "1:@ 2:1 3:0 4:1 5:[1 8] 6:1 7:0 8:1 9:~-30 10:~-18 11:~10 12:~8 13:~4 21:5 22:{1:6300 2:6} "
     "22:{1:1300 2:7} 23:{1:10713 2:3} 24:{1:62 2:1}",
     "[timestamp: @, hsdpa_capable: 1, edch_capable: 0, duplex_mode: TDD, multi_band_info: [1, 8], "
     "ims_emergency_support: 1, cell_barred: 0, fach_meas_occ_info_present: 1, s_rxlev: -30, "
     "s_qual: -18, s_intrasearch: 10, s_intersearch: 8, s_search_rat: 4, s_cell_prio: 5, "
     "eutra_prio_info: [[earfcn: 6300, prio: 6], [earfcn: 1300, prio: 7]], utra_prio_info: "
     "[[uarfcn: 10713, prio: 3]], gsm_prio_info: [[arfcn: 62, prio: 1]]]"},
    {0x3CD105, "KCellularWcdmaNbrCellMeas", "myUMTSNbrMeasDict",
     "Received UMTS InterRat Meas Info is",
     "1:@ 2:{1:10713 2:1 3:305 4:13 5:~-92} 3:{1:62 2:35 3:30} 4:{1:6300 2:301 3:20 4:~-101 "
     "5:~-23}",
     "[timestamp: @, meas_utra_result: [[uarfcn: 10713, band: 1, psc: 305, ecno: 13, rscp: -92]], "
     "meas_gsm_result: [[arfcn: 62, bsic: 35, rxlev: 30]], meas_lte_result: [[earfcn: 6300, "
     "phy_cell_id: 301, eutra_band: 20, rsrp: -101, rsrq: -23]]]"},
    {0x3CD112, "KCellularWcdmaRrcConnectionState", "myUMTSRRCStateDict",
     "Received UMTS RRC Connection State is", "1:@ 2:3 3:3 4:1",
     "[timestamp: @, state: KWCDMA_RRC_CONN_STATE_ESTABLISH, establishment_cause: "
     "KRRC_EST_ORIG_BACKGND_CALL, release_cause: KRRC_REL_NO_CAUSE]"},
    {0x3CD113, "KCellularWcdmaRrcConfiguration", "myUMTSRRCConfigDict",
     "Received UMTS RRC Configuration is", "1:@ 2:640 3:1 4:0",
     "[timestamp: @, drx_cycle_length_ms: 640, is_mimo_configured: 1, is_dc_configured: 0]"},
    {0x3CD302, "KCellularLteTxPower", "myLTETxPowerDict", "Received LTE Tx Power is",
     "1:@ 2:{1:~-20 2:~15 3:9} 2:{1:~-19}",
     "[timestamp: @, tx_power_info: [[pucch_tx_power: -20, pusch_tx_power: 15, subframe_index: 9], "
     "[pucch_tx_power: -19]]]"},
    {0x3CD30B, "KCellularLteComponentCarrierInfo", "myLTECompCarrDict",
     "Received Component Carrier info is", "1:@ 2:6300 3:1300 4:3350 5:20 6:10 7:5",
     "[timestamp: @, pcc_earfcn: 6300, scc0_earfcn: 1300, scc1_earfcn: 3350, pcc_bandwidth: 20, "
     "scc0_bandwidth: 10, scc1_bandwidth: 5]"},
    {0x3CD30E, "KCellularLteSelReselCellInfo", "myLTESelReselDict",
     "Received LTE Cell Resel Info is",
     "1:@ 2:[3 7] 3:1 4:0 5:95 11:~-64 12:~-18 13:4 20:5 "
     "21:{1:1300 2:~-62 4:~2 6:3 11:6 12:1 13:3} 21:{1:3350 6:9}",
     "[timestamp: #, multi_band_info: [3, 7], ims_emergency_support: 1, ac_barring_for_emergency: "
     "0, mo_signalling_ac_barring_factor: 95, QRxLevMin: -64, QQualMin: -18, Q_hyst: 4, "
     "priority_operating_freq: 5, nbr_eutra: [[earfcn: 1300, Q_rxlev_min: -62, Q_offset: 2, dl_bw: "
     "3, priority: 6, frame_type: TDD, band: 3], [earfcn: 3350, dl_bw: 9]]]"},
    {0x3CD30F, "KCellularLteNbrEutraCellMeas", "myLTEIntraRatMeasDict", "Received LTE IRAT Meas is",
     "1:@ 2:{1:6300 2:77 3:20 4:~-98 5:~-21} 2:{2:78 5:~-20}",
     "[timestamp: @, meas_nbr_eutra: [[nbr_earfcn: 6300, nbr_phys_cell_id: 77, freq_band_ind: 20, "
     "nbr_rsrp: -98, nbr_rsrq: -21], [nbr_phys_cell_id: 78, nbr_rsrq: -20]]]"},
    {0x3CD310, "KCellularLteNbrInterRatCellMeas", "myLTEInterRatMeasDict",
     "Received LTE InterRat Meas Info is", "1:@ 2:{1:10713 2:305 3:~-92 4:27} 3:{1:62 2:35 3:30}",
     "[timestamp: @, meas_nbr_utra: [[uarfcn: 10713, psc: 305, rscp: -92, ecno: 27]], "
     "meas_nbr_geran: [[arfcn: 62, bsic: 35, rxlev: 30]]]"},
    {0x3CD313, "KCellularLteCarrierAggregationStatus", "myLTECAStatusDict",
     "Received CA Status Dict is",
     "1:@ 2:{1:0 2:2 3:301 6:5 7:1 10:5 11:~-11250 12:~-1050 13:~13 14:~-8199} "
     "2:{1:1 2:1 6:0 11:~50 12:~-25} 2:{1:2 2:0 6:6}",
     "[timestamp: @, scc_list: [[index: 0, state: SCC_STATE_ACTIVATED, pci: 301, dl_bandwidth: 5, "
     "has_uplink: 1, ul_bandwidth: 5, rsrp: -11250, rsrq: -1050, snr: 13, rssi: -8199], [index: 1, "
     "state: SCC_STATE_CONFIGURED_DEACTIVATED, dl_bandwidth: 0, rsrp: 50, rsrq: -25], [index: 2, "
     "state: SCC_STATE_DECONFIGURED, dl_bandwidth: 6]]]"},
    {0x3CD317, "KCellularLteSecondaryCellMeasurements", "myLTESecondaryCellMeasDict",
     "Received Secondary Cell Measurement Dict is",
     "1:@ 2:{1:1 2:~-9999 3:~-1275 4:~20 5:~-7001} 2:{1:2}",
     "[timestamp: @, scc_rx_measurement: [[index: 1, rsrp: -9999, rsrq: -1275, snr: 20, rssi: "
     "-7001], [index: 2]]]"},
    {0x3CD509, "KCellularMmCommonInfo", "myCellularMMCommonInfoDict",
     "Received MM Common Info Dict is :",
     "1:@ 2:<2926101032547698> 3:{1:<62f210>} 4:{1:<62f220> 2:9}",
     "[timestamp: @, imsi: <2926101032547698>, eplmn_list: [[encoded_plmn: <62f210>]], "
     "roaming_flai_list: [[encoded_plmn: <62f220>, lac: 9]]]"},
    {0x3CD50A, "KCellularMmContext", "myMMContextDict", "Received MM Context Info is",
     "1:@ 2:0 3:1 4:{1:<62f210> 2:4660} 5:305419896 6:3600 9:1",
     "[timestamp: @, reg_status: KREG_STATUS_NORMAL_SERVICE, update_status: STATUS_UPDATED, lai: "
     "[encoded_plmn: <62f210>, lac: 4660], tmsi: 305419896, t3212_dur_s: 3600, is_combined_proc: "
     "1]"},
    {0x3CD50B, "KCellularGmmContext", "myGMMContextDict", "Received GMM Context Info is",
     "1:@ 2:0 3:0 4:{1:<62f210> 3:4660 4:7} 6:3240 9:2",
     "[timestamp: @, reg_status: KREG_STATUS_NORMAL_SERVICE, update_status: GPRS_STATUS_UPDATED, "
     "rai: [encoded_plmn: <62f210>, lac: 4660, rac: 7], t3312_dur_s: 3240, reg_proc: "
     "KNAS_MM_REG_PROC_ROUTING_AREA_UPDATE]"},
    {0x3CD50C, "KCellularEmmContext", "myLTEEMMContextDict", "Received EMM Context is",
     "1:@ 2:0 3:0 4:2 5:{1:<62f210> 2:5000} 6:{1:32769 2:10 3:3735928559} 7:0 8:1 10:1",
     "[timestamp: @, reg_status: KREG_STATUS_NORMAL_SERVICE, update_status: EPS_STATUS_UPDATED, "
     "ue_op_mode: EPS_UE_OP_MODE_CSPS_MODE_1, tai_list: [[encoded_plmn: <62f210>, tac: 5000]], "
     "guti: [mmegi: 32769, mmec: 10, m_tmsi: 3735928559], reject_cause: EMM_CAUSE_NO_CAUSE, "
     "reg_proc: EMM_PROC_ATTACH, is_ims_voice_supported: 1]"},
    {0x3CD50D, "KCellularActivatedBearerContexts", "myCellularActiveBearerDict",
     "Received Bearer Context Info is",
     "1:@ 2:2 3:{1:1 2:5 3:'internet' 4:0 5:<0a000001> 10:0} 3:{1:2 3:'ims' 4:2}",
     "[timestamp: #, bearer_context_count: 2, bearer_contexts: [[cid: 1, nsapi: 5, apn: internet, "
     "pdp_type: PDP_TYPE_IPv4, pdp_addr: <0a000001>, is_addr_irat_mobile: 0], [cid: 2, apn: ims, "
     "pdp_type: PDP_TYPE_IPv4v6]]]",
     "[timestamp: @, bearer_context_count: 2, bearer_contexts: [[cid: 1, nsapi: 5, apn: internet, "
     "pdp_type: PDP_TYPE_IPv4, pdp_addr: <0a000001>, is_addr_irat_mobile: 0], [cid: 2, apn: ims, "
     "pdp_type: PDP_TYPE_IPv4v6]]]"},
};

std::string replaced(std::string text, char mark, std::string_view by) {
  for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + by.size()))
    text.replace(at, 1, by);
  return text;
}

constexpr std::string_view kMilliseconds = "1700000000999";  // seconds are floored

std::string withStamps(const char* printedStore) {
  return replaced(replaced(printedStore, '@', "2023-11-14 22:13:20 UTC"), '#', kMilliseconds);
}

}  // namespace

const std::vector<SampleMetric>& sampleMetrics() {
  static const std::vector<SampleMetric> samples = [] {
    std::vector<SampleMetric> made;
    for (const Row& row : kRows)
      made.push_back({row.id, row.messageClass, row.store, row.logText,
                      wire(replaced(row.fields, '@', kMilliseconds)), withStamps(row.logged),
                      withStamps(row.kept ? row.kept : row.logged)});
    return made;
  }();
  return samples;
}

void handleSampleMetrics() {
  const RecordedLog log;
  for (const SampleMetric& sample : sampleMetrics())
    (void)MetricValidator::sharedInstance()->isMetricIDValidWithMetricdict(
        {{"kKeyMetricID", Value(sample.id)}, {"kKeyPayload", Value(test::data(sample.payload))}});
}

}  // namespace quorin::test
