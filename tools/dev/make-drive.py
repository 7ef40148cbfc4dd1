#!/usr/bin/env python3
"""make-drive.py METRICCTL: prints the recording that ships with the application: ninety seconds of a
made-up drive that leaves LTE for UMTS and GSM and comes back, with all thirty metrics."""
import json
import math
import random
import subprocess
import sys

START_MS = 1_778_133_600_000  # 2026-05-07 06:00:00 UTC
SECONDS = 90
MCC, MNC = 1, 1  # the test network
PLMN = "00f110"  # 3GPP TS 24.008, 10.5.1.3
IMSI_IDENTITY = "0910101032547698"  # 001010123456789 (3GPP TS 24.008, 10.5.1.4)

LTE_CELLS = [  # (position in m, PCI, EARFCN, band, MHz, cell ID, TAC)
    (0, 101, 1300, 3, 20, 0x0012D001, 4711),
    (450, 214, 1300, 3, 20, 0x0012E002, 4711),
    (900, 77, 1300, 3, 20, 0x0012E103, 4711),
    (1500, 33, 1300, 3, 20, 0x0012F003, 4712),
    (1850, 310, 1300, 3, 20, 0x0012F104, 4712),
]
LOWEST_MEASURABLE_RSRQ = -20
SPEED_M_PER_S = 20
UMTS_FROM, GSM_FROM, LTE_AGAIN = 45, 60, 72
BANDWIDTH_CODE = {1.4: 0, 3: 1, 5: 2, 10: 3, 15: 4, 20: 5}

noise = random.Random(1)


def rsrp(cell, x, site_offset_m=120):
    """3GPP TR 36.942 macro path loss at 18 dBm a resource element, with a little fading."""
    kilometres = math.hypot(x - cell[0], site_offset_m) / 1000
    return 18 - (128.1 + 37.6 * math.log10(kilometres)) + noise.gauss(0, 1.5)


def quality(level, interference_mw):
    """RSRQ and SINR in dB of a cell at this level, fully loaded neighbours, noise -125 dBm."""
    signal = 10 ** (level / 10)
    total = signal + interference_mw + 10 ** (-12.5)
    return -3 + 10 * math.log10(signal / total) - 7.8, 10 * math.log10(signal / (total - signal))


class Drive:
    def __init__(self):
        self.events = []

    def say(self, second, class_name, **fields):
        stamp = START_MS + round(second * 1000)
        self.events.append((stamp, class_name, {"timestamp": stamp, **fields}))


def sim_and_nas(drive):
    drive.say(0, "KCellularSimCardFiles", ef_list=[
        {"ef_id": 0x6F07, "content": "08" + IMSI_IDENTITY},
        {"ef_id": 0x2FE2, "content": "98941010325476981032"},
        {"ef_id": 0x6F3E, "content": "ff"},
    ])
    drive.say(0.1, "KCellularMmCommonInfo", imsi=IMSI_IDENTITY,
              eplmn_list=[{"encoded_plmn": PLMN}])
    drive.say(0.5, "KCellularLteSelReselCellInfo", multi_band_info=[3], ims_emergency_support=1,
              QRxLevMin=-124, QQualMin=-20, Q_hyst=4, S_non_intra_search_P=8, S_intra_search_P=58,
              Thresh_serving_lowP=6, priority_operating_freq=6, nbr_eutra=[
                  {"earfcn": 6300, "Q_rxlev_min": -124, "Q_offset": 0, "dl_bw": 3,
                   "Thres_X_highP": 10, "Thres_X_lowP": 10, "priority": 4, "frame_type": "FDD",
                   "band": 20}])
    drive.say(0.6, "KCellularLteCdrxConfig", cell_status=0, on_duration_ms=10,
              drx_inactivity_ms=100, drx_retx_timer_ms=8, long_drx_cycle_ms=320,
              short_drx_cycle_ms=40, drx_short_cycle_num=4,
              rrc_state="KLTE_RRC_STATE_CONNECTED", cdrx_config_status=1, transmission_mode=3)
    drive.say(2, "KCellularActivatedBearerContexts", bearer_context_count=2, bearer_contexts=[
        {"cid": 1, "nsapi": 5, "apn": "internet", "pdp_type": "PDP_TYPE_IPv4", "pdp_addr": "0a2a0017",
         "primary_dns_type": "PDP_TYPE_IPv4", "primary_dns_addr": "0a2a0001"},
        {"cid": 2, "nsapi": 6, "apn": "ims", "pdp_type": "PDP_TYPE_IPv6",
         "pdp_addr": "20010db8002a00000000000000000017"}])


def emm(drive, second, tac, procedure):
    drive.say(second, "KCellularEmmContext", reg_status="KREG_STATUS_NORMAL_SERVICE",
              update_status="EPS_STATUS_UPDATED", ue_op_mode="EPS_UE_OP_MODE_CSPS_MODE_1",
              tai_list=[{"encoded_plmn": PLMN, "tac": tac}],
              guti={"mmegi": 32769, "mmec": 1, "m_tmsi": 0xC0000000 + tac},
              reject_cause="EMM_CAUSE_NO_CAUSE", reg_proc=procedure, t3412_dur_s=3240,
              is_ims_voice_supported=True, is_emerg_bearer_supported=True)


def rrc(drive, second, state, previous, milliseconds, cause):
    drive.say(second, "KCellularLteRrcState", state="KLTE_RRC_STATE_" + state,
              prev_state="KLTE_RRC_STATE_" + previous, prev_state_dur_ms=milliseconds,
              cause="KLTE_RRC_CAUSE_" + cause)


def lte_second(drive, second, serving):
    x = second * SPEED_M_PER_S
    levels = {cell: rsrp(cell, x) for cell in LTE_CELLS}
    best = max(levels, key=levels.get)
    if serving is None or levels[best] > levels[serving] + 3:
        if serving is None or best[6] != serving[6]:
            emm(drive, second + 0.3, best[6], "EMM_PROC_TAU" if second else "EMM_PROC_ATTACH")
        serving = best
        drive.say(second, "KCellularLteScellInfo", phy_cell_id=serving[1], dl_freq=serving[2],
                  ul_freq=serving[2] + 18000, dl_bw=serving[4] * 2, ul_bw=serving[4] * 2,
                  cell_id=serving[5], freq_band_ind=serving[3], tracking_area_code=serving[6],
                  num_mnc_digits=2, sel_plmn_mcc=MCC, sel_plmn_mnc=MNC)
        drive.say(second + 0.2, "KCellularLteComponentCarrierInfo", pcc_earfcn=serving[2],
                  scc0_earfcn=6300, pcc_bandwidth=serving[4], scc0_bandwidth=10)
    level = levels[serving]
    interference = sum(10 ** (levels[cell] / 10) for cell in LTE_CELLS if cell is not serving)
    rsrq, sinr = quality(level, interference)
    sample = {"phy_cell_id": serving[1], "rsrp0": round(level), "rsrp1": round(level - 1.5),
              "rsrq0": round(rsrq), "rsrq1": round(rsrq), "sinr0": round(sinr * 2),
              "sinr1": round((sinr - 1) * 2)}
    drive.say(second + 0.1, "KCellularLteRsrpRsrqSinr", sample_period_ms=1000, num_samples=1,
              inst_values=[sample])
    pusch = min(23, round(10 * math.log10(20) - 85 + 0.8 * (18 - level)))
    drive.say(second + 0.15, "KCellularLteTxPower", tx_power_info=[
        {"pucch_tx_power": pusch - 6, "pusch_tx_power": pusch, "subframe_index": 2}])
    if second % 2 == 0:
        neighbours = []
        for cell in LTE_CELLS:
            if cell is not serving:
                others = sum(10 ** (levels[o] / 10) for o in LTE_CELLS if o is not cell)
                rsrq_there = quality(levels[cell], others)[0]
                if rsrq_there < LOWEST_MEASURABLE_RSRQ:
                    continue
                neighbours.append({"nbr_earfcn": cell[2], "nbr_phys_cell_id": cell[1],
                                   "freq_band_ind": cell[3], "nbr_rsrp": round(levels[cell]),
                                   "nbr_rsrq": round(rsrq_there * 2)})
        drive.say(second + 0.25, "KCellularLteNbrEutraCellMeas", meas_nbr_eutra=neighbours)
        carrier = {"rsrp": round((level + 4) * 100), "rsrq": round((rsrq + 1) * 100),
                   "snr": round(sinr + 2), "rssi": round((level + 4 + 27.8) * 100)}
        drive.say(second + 0.3, "KCellularLteCarrierAggregationStatus", scc_list=[
            {"index": 1, "state": "SCC_STATE_ACTIVATED", "pci": serving[1] + 1, "dl_earfcn": 6300,
             "dl_rf_band": 20, "dl_bandwidth": 3, "has_uplink": False, **carrier}])
        drive.say(second + 0.35, "KCellularLteSecondaryCellMeasurements",
                  scc_rx_measurement=[{"index": 1, **carrier}])
    if second % 5 == 0:
        drive.say(second + 0.4, "KCellularLteNbrInterRatCellMeas",
                  meas_nbr_utra=[{"uarfcn": 10638, "psc": 145, "rscp": -95, "ecno": 24}],
                  meas_nbr_geran=[{"arfcn": 62, "bsic": 22, "rxlev": 28}])
    return serving


def umts_second(drive, second):
    if second == UMTS_FROM:
        rrc(drive, second - 0.1, "IDLE", "CONNECTED", 44_000, "REL_T310_EXP")
        drive.say(second, "KCellularWcdmaCellInfo", mcc=MCC, mnc=MNC, lac=4700, cell_id=0x00330021,
                  wcdma_band="SYS_BAND_WCDMA_I_IMT_2000", dl_uarfcn=10638, psc=145,
                  num_mnc_digits=2, hspa="SYS_HS_IND_HSDPA_HSUPA_SUPP_CELL")
        drive.say(second + 0.1, "KCellularWcdmaRrcConnectionState",
                  state="KWCDMA_RRC_CONN_STATE_CELL_DCH",
                  establishment_cause="KRRC_EST_INTER_RAT_CELL_RESELECT",
                  release_cause="KRRC_REL_NO_CAUSE")
        drive.say(second + 0.2, "KCellularWcdmaRrcConfiguration", drx_cycle_length_ms=640,
                  is_mimo_configured=False, is_dc_configured=True)
        drive.say(second + 0.3, "KCellularWcdmaSelReselCellInfo", hsdpa_capable=1, edch_capable=1,
                  duplex_mode="FDD", multi_band_info=[1], ims_emergency_support=0, cell_barred=0,
                  fach_meas_occ_info_present=0, s_rxlev=20, s_qual=8, s_intrasearch=10,
                  s_intersearch=8, s_search_rat=4, s_cell_prio=3,
                  eutra_prio_info=[{"earfcn": 1300, "prio": 6}],
                  utra_prio_info=[{"uarfcn": 10638, "prio": 3}],
                  gsm_prio_info=[{"arfcn": 62, "prio": 1}])
        area = {"encoded_plmn": PLMN, "lac": 4700}
        drive.say(second + 0.4, "KCellularMmContext", reg_status="KREG_STATUS_NORMAL_SERVICE",
                  update_status="STATUS_UPDATED", lai=area, tmsi=0xD1234567, t3212_dur_s=3600,
                  proc_failure_cause="KNAS_MM_PROC_FAILURE_CAUSE_NONE",
                  reject_cause="KNAS_MM_REJ_CAUSE_NONE", is_combined_proc=True)
        drive.say(second + 0.5, "KCellularGmmContext", reg_status="KREG_STATUS_NORMAL_SERVICE",
                  update_status="GPRS_STATUS_UPDATED", rai={**area, "rac": 1}, p_tmsi=0xE1234567,
                  t3312_dur_s=3240, proc_failure_cause="KNAS_MM_PROC_FAILURE_CAUSE_NONE",
                  reject_cause="KNAS_MM_REJ_CAUSE_NONE", reg_proc="KNAS_MM_REG_PROC_COMBINED_RAU")
    rssi = round(-78 - (second - UMTS_FROM) + noise.gauss(0, 1.5))
    drive.say(second + 0.6, "KCellularWcdmaScellMeasurement", connected_mode=True,
              rx_info=[{"rssi": rssi}, {"rssi": rssi - 2}])
    drive.say(second + 0.65, "KCellularWcdmaTxPower", tx_power_info=[
        {"pucch_tx_power": round(-85 - rssi), "subframe_index": 0}])
    if second % 2 == 0:
        drive.say(second + 0.7, "KCellularWcdmaNbrCellMeas",
                  meas_utra_result=[{"uarfcn": 10638, "band": 1, "psc": 146, "ecno": 20,
                                     "rscp": rssi - 12}],
                  meas_gsm_result=[{"arfcn": 62, "bsic": 22, "rxlev": 33}],
                  meas_lte_result=[{"earfcn": 1300, "phy_cell_id": 33, "eutra_band": 3,
                                    "rsrp": -118, "rsrq": -36}])


def gsm_second(drive, second):
    if second == GSM_FROM:
        drive.say(second - 0.1, "KCellularWcdmaRrcConnectionState",
                  state="KWCDMA_RRC_CONN_STATE_INACTIVE", release_cause="KRRC_REL_NO_CELL")
        drive.say(second, "KCellularGsmScellInfo", mcc=MCC, mnc=MNC, lac=4690, cell_id=1042,
                  gsm_band="SYS_BAND_GSM_PGSM_900", arfcn=62, bsic=22, state="NON_DEDICATED_STATE",
                  num_mnc_digits=2)
        drive.say(second + 0.1, "KCellularGsmIdleConfig", arfcn_bcch=62, mcc=MCC, mnc=MNC, lac=4690,
                  ci=1042, bsic=22, dtx_from_bs=1, radio_link_timeout=24, ms_txpwr=33,
                  rx_acc_min=5, cbq=0, cba=0, c2_valid=1, t3212=10, bs_pa_mfrms=5,
                  max_retrans_cs=2, emerg_call_allowed=1, attach_allowed=1, reest_allowed=0)
        drive.say(second + 0.2, "KCellularGsmGprsConfig", gprs_sup=True, rac=1, sp_pg_cy=False,
                  nco=0, nom=2, cr_hyst=4, ext_upl_tbf_supported=True)
        drive.say(second + 0.3, "KCellularGsmCsRfMeasurement", scell_arfcn=62, simplified_l1_state=2,
                  current_antenna=0, cs_tx_pwr=[33, 31, 29], cs_rxlev_sub=35, cs_rxqual_sub=1,
                  scell_band=0)
    level = round(-72 + noise.gauss(0, 2))
    drive.say(second + 0.4, "KCellularGsmIdleScellMeasurement", scell_arfcn=62,
              simplified_l1_state=1, current_antenna=0, idle_rxlev_dBm=level)
    if second % 2 == 0:
        drive.say(second + 0.5, "KCellularGsmGrrEventMeasCr",
                  gsm_ncell_meas=[{"mcc": MCC, "mnc": MNC, "lac": 4690, "ci": 1043, "bsic": 23,
                                   "arfcn": 70, "rxlev": 25}],
                  umts_ncell_meas=[{"cell_type": 0, "cpich_sc": 145, "dl_uarfcn": 10638,
                                    "cpich_rscp": 22, "cpich_ecn0": 28}],
                  lte_ncell_meas=[{"physical_cell_id": 33, "bandwidth": 5, "rsrp": 40,
                                   "earfcn": 1300, "rsrq": 20}])


def encode(metricctl, class_name, dictionaries):
    lines = "".join(json.dumps(d) + "\n" for d in dictionaries)
    done = subprocess.run([metricctl, "encode", "--class", class_name], input=lines, text=True,
                          stdout=subprocess.PIPE, check=True)
    return done.stdout.splitlines()


def metric_ids(metricctl):
    page = subprocess.run([metricctl, "schema"], text=True, stdout=subprocess.PIPE, check=True).stdout
    ids, name = {}, None
    for line in page.splitlines():
        if line.startswith("## "):
            name = line[3:]
        elif line.startswith("Metric 0x"):
            ids[name] = int(line[7:-1], 16)
    return ids


def main(metricctl):
    drive = Drive()
    sim_and_nas(drive)
    rrc(drive, 0.2, "IDLE", "NULL", 1200, "NA")
    rrc(drive, 1.0, "CONNECTED", "IDLE", 800, "EST_MO_DATA")
    serving = None
    for second in range(SECONDS):
        if second == LTE_AGAIN:
            serving = None
            rrc(drive, second, "CONNECTED", "IDLE", 27_000, "EST_MO_SIGNAL")
        if second < UMTS_FROM or second >= LTE_AGAIN:
            serving = lte_second(drive, second, serving)
        elif second < GSM_FROM:
            umts_second(drive, second)
        else:
            gsm_second(drive, second)
    drive.events.sort(key=lambda event: event[0])
    ids = metric_ids(metricctl)
    payloads = {}
    for name in {event[1] for event in drive.events}:
        payloads[name] = iter(encode(metricctl, name, [e[2] for e in drive.events if e[1] == name]))
    for stamp, name, _ in drive.events:
        print(json.dumps({"kKeyMetricID": ids[name], "kKeyPayload": next(payloads[name]),
                          "kKeyProfileID": 0, "t": stamp}, separators=(",", ":")))


main(sys.argv[1])
