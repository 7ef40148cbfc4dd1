"""What a drive log says, for check_import.py: every metric that a log is to fill, in order, as
(time, metric ID, fields). Fields are {path: (value in the log's unit, the field's unit)}; the unit
is 0 where the number is exact.
"""
import datetime
import json
import re

NOTHING = ("", "-", "--")


def floating(text):
    return None if text is None or text in NOTHING else float(text)


def inside(value, low, high, *ends):
    """The value unless it is none: beyond its scale, or at an end of it."""
    return value if value is not None and low <= value <= high and value not in ends else None


def keep(fields, path, value, unit=0):
    if value is not None:
        fields[path] = (value, unit)


def identity(row, column, low, high):
    value = inside(floating(row.get(column)), low, high)
    return None if value is None else int(value)


def network(row):
    text = row.get("Operator", "")
    if not re.fullmatch(r"\d{5,6}", text):
        return None, None, None
    return int(text[:3]), int(text[3:]), len(text) - 3


UMTS_BANDS = {"U1": 80, "U2": 81, "U3": 82, "U4": 83, "U5": 84, "U6": 85, "U7": 86, "U8": 87,
              "U9": 88, "U11": 90, "U19": 91}
GSM_BANDS = {"G850": 43, "G1800": 47, "G1900": 48}


def event_cell(row):
    """The event's own cell, where it is the row's, fills the columns that such a log lacks."""
    named = re.findall(r"(\d+)-(\d+)-(\d+)-(\d+)-(\d+)(?:-(\d+)-(\d+))?(?=$|[: ])",
                       row.get("EventDetails", ""))
    if not named or named[-1][2:5] != (row["LAC"], row["Node"], row["CellID"]):
        return
    mcc, mnc, _, _, _, channel, code = named[-1]
    row.setdefault("Operator", mcc + mnc)
    if channel:
        row.setdefault("ARFCN", channel)
        row.setdefault("PSC", code)


def lte_row(row):
    cell, quality = {}, {}
    pci = identity(row, "PSC", 0, 503)
    keep(cell, "phy_cell_id", pci)
    keep(cell, "dl_freq", identity(row, "ARFCN", 0, 262143))
    enb, local = identity(row, "Node", 0, 1048575), identity(row, "CellID", 0, 255)
    keep(cell, "cell_id", None if enb is None or local is None else enb << 8 | local)
    band = re.fullmatch(r"L(\d+)", row.get("BAND", ""))
    keep(cell, "freq_band_ind", int(band[1]) if band else None)
    keep(cell, "tracking_area_code", identity(row, "LAC", 1, 65533))
    for path, part in zip(("sel_plmn_mcc", "sel_plmn_mnc", "num_mnc_digits"), network(row)):
        keep(cell, path, part)
    level = inside(floating(row.get("Level")), -139, -45, -113, -51)
    keep(quality, "inst_values[0].rsrp0", level, 1)
    keep(quality, "inst_values[0].rsrq0", inside(floating(row.get("Qual")), -34, 3), 1)
    keep(quality, "inst_values[0].sinr0", inside(floating(row.get("SNR")), -30, 50), 0.5)
    if quality:
        keep(quality, "inst_values[0].phy_cell_id", pci)
    return [(0x3C40C2, cell), (0x3C4F6A, quality)]


def umts_row(row):
    cell, levels = {}, {}
    for path, part in zip(("mcc", "mnc", "num_mnc_digits"), network(row)):
        keep(cell, path, part)
    keep(cell, "lac", identity(row, "LAC", 1, 65533))
    rnc, local = identity(row, "Node", 0, 4095), identity(row, "CellID", 0, 65535)
    keep(cell, "cell_id", None if rnc is None or local is None else rnc << 16 | local)
    keep(cell, "wcdma_band", UMTS_BANDS.get(row.get("BAND")))
    keep(cell, "dl_uarfcn", identity(row, "ARFCN", 0, 16383))
    keep(cell, "psc", identity(row, "PSC", 0, 511))
    if row.get("State") in ("V", "D", "VD"):
        keep(levels, "connected_mode", 1)
    keep(levels, "rx_info[0].rssi", inside(floating(row.get("Level")), -119, -25, -113, -51), 1)
    return [(0x3C300C, cell), (0x3CD102, levels)]


def gsm_row(row):
    cell, idle = {}, {}
    for path, part in zip(("mcc", "mnc", "num_mnc_digits"), network(row)):
        keep(cell, path, part)
    arfcn = identity(row, "ARFCN", 0, 1023)
    keep(cell, "lac", identity(row, "LAC", 1, 65533))
    keep(cell, "cell_id", identity(row, "CellID", 0, 65535))
    keep(cell, "gsm_band", GSM_BANDS.get(row.get("BAND")))
    keep(cell, "arfcn", arfcn)
    keep(cell, "bsic", identity(row, "PSC", 0, 63))
    keep(cell, "state", {"V": 1, "VD": 1, "I": 2, "D": 2}.get(row.get("State")))
    if row.get("State") not in ("V", "VD"):
        keep(idle, "idle_rxlev_dBm", inside(floating(row.get("Level")), -112, -49, -51), 1)
        if idle:
            keep(idle, "scell_arfcn", arfcn)
    return [(0x3C2E0C, cell), (0x3CD002, idle)]


ROWS = {"4G": lte_row, "3G": umts_row, "2G": gsm_row}


def gnettrack(lines):
    header, *rows = [line.split("\t") for line in lines]
    rows = [dict(zip(header, row)) for row in rows if row != [""]]
    for column, whatever_value in (("Level", False), ("Qual", False), ("SNR", True)):
        for technology in ROWS:
            values = [row[column] for row in rows
                      if row["NetworkTech"] == technology and row.get(column, "") not in NOTHING]
            if len(set(values)) == 1 and (len(values) >= 60 or
                                          whatever_value and float(values[0]) == 0):
                for row in rows:
                    if row["NetworkTech"] == technology:
                        row[column] = ""
    for row in rows:
        if row["NetworkTech"] not in ROWS:
            continue
        event_cell(row)
        moment = datetime.datetime.strptime(row["Timestamp"], "%Y.%m.%d_%H.%M.%S")
        for metric, fields in ROWS[row["NetworkTech"]](row):
            if fields:
                yield moment, metric, fields


def listed(value):
    if value is None:
        return []
    return value if isinstance(value, list) else [value.get("Ignored", value)]


def megahertz(text):
    number = re.fullmatch(r"([\d.]+) MHz", text or "")
    return float(number[1]) if number else None


def swapped(text):
    """The number that the text writes."""
    return int(text, 16) if text.startswith("0x") else None


def rrc_cell(record):
    fields = {}
    for path, key in (("phy_cell_id", "Cell ID"), ("dl_freq", "Downlink frequency"),
                      ("ul_freq", "Uplink frequency"), ("cell_id", "Cell Identity"),
                      ("freq_band_ind", "Band Indicator"), ("tracking_area_code", "TAC"),
                      ("num_mnc_digits", "MNC Digit"), ("sel_plmn_mcc", "MCC"),
                      ("sel_plmn_mnc", "MNC")):
        keep(fields, path, record.get(key))
    keep(fields, "dl_bw", megahertz(record.get("Downlink bandwidth")), 0.5)
    keep(fields, "ul_bw", megahertz(record.get("Uplink bandwidth")), 0.5)
    yield 0x3C40C2, fields
    fields = {}
    keep(fields, "pcc_earfcn", record.get("Downlink frequency"))
    keep(fields, "pcc_bandwidth", megahertz(record.get("Downlink bandwidth")), 1)
    yield 0x3CD30B, fields


def serving(record):
    for cell in listed(record.get("Subpackets")):
        if cell.get("Is Serving Cell") != 1:
            continue
        where = cell["Serving Cell Index"]
        if where == "PCell":
            fields = {}
            for antenna in (0, 1):
                for name, key, low, unit in (("rsrp", "RSRP", -180, 1), ("rsrq", "RSRQ", -30, 1),
                                             ("sinr", "FTL SNR", -20, 0.5)):
                    keep(fields, f"inst_values[0].{name}{antenna}",
                         inside(cell.get(f"{key} Rx[{antenna}]"), low, 60, low), unit)
            if fields:
                keep(fields, "inst_values[0].phy_cell_id", cell.get("Physical Cell ID"))
            yield 0x3C4F6A, fields
        elif where.endswith("_SCell"):
            for metric, base in ((0x3CD313, "scc_list[0]."), (0x3CD317, "scc_rx_measurement[0].")):
                fields = {}
                for name, low in (("rsrp", -180), ("rsrq", -30), ("rssi", -110)):
                    keep(fields, base + name, inside(cell.get(name.upper()), low, 60, low), 0.01)
                if metric == 0x3CD313:
                    keep(fields, base + "pci", cell.get("Physical Cell ID"))
                    keep(fields, base + "dl_earfcn", cell.get("E-ARFCN"))
                if fields:
                    keep(fields, base + "index", int(where.split("_")[0]))
                yield metric, fields


def neighbours(around, level_key, quality_key):
    fields = {}
    for index, cell in enumerate(listed(around.get("Neighbor Cells"))):
        base = f"meas_nbr_eutra[{index}]."
        keep(fields, base + "nbr_earfcn", around.get("E-ARFCN"))
        keep(fields, base + "nbr_phys_cell_id", cell.get("Physical Cell ID"))
        keep(fields, base + "nbr_rsrp", inside(cell.get(level_key), -180, 0, -180), 1)
        keep(fields, base + "nbr_rsrq", inside(cell.get(quality_key), -30, 30, -30), 0.5)
    yield 0x3CD30F, fields


def filtered_neighbours(record):
    yield from neighbours(record, "RSRP(dBm)", "RSRQ(dB)")


def momentary_neighbours(record):
    for part in listed(record.get("SubPackets")):
        yield from neighbours(part, "Inst Measured RSRP", "Inst Measured RSRQ")


def emm(record):
    fields, state, substate = {}, record["EMM State"], record["EMM Substate"]
    if state == "EMM_REGISTERED" and substate == "EMM_REGISTERED_NORMAL_SERVICE":
        keep(fields, "reg_status", 0)
    elif state in ("EMM_REGISTERED", "EMM_DEREGISTERED"):
        rest = substate.removeprefix(state)
        keep(fields, "reg_status", {"_LIMITED_SERVICE": 2, "_NO_CELL_AVAILABLE": 3}.get(rest))
    elif state == "EMM_REGISTERED_INITIATED" and substate.startswith("EMM_WAITING_FOR_"):
        keep(fields, "reg_status", 11)
    keep(fields, "reg_proc", 7 if state == "EMM_SERVICE_REQUEST_INITIATED" else None)
    if record.get("GUTI Valid") == 1:
        keep(fields, "guti[0].mmegi", swapped(record["GUTI MME Group ID"]))
        keep(fields, "guti[0].mmec", swapped(record["GUTI MME Code"]))
        keep(fields, "guti[0].m_tmsi", swapped(record["GUTI M-TMSI"]))
    yield 0x3CD50C, fields


def esm(record):
    fields = {}
    if record["EPS bearer state"] == 2:
        keep(fields, "bearer_contexts[0].nsapi", inside(record["EPS bearer ID"], 5, 15))
    yield 0x3CD50D, fields


RECORDS = {
    "LTE_RRC_Serv_Cell_Info": rrc_cell,
    "LTE_PHY_Serv_Cell_Measurement": serving,
    "LTE_PHY_Connected_Mode_Intra_Freq_Meas": filtered_neighbours,
    "LTE_PHY_Connected_Mode_Neighbor_Measurement": momentary_neighbours,
    "LTE_NAS_EMM_State": emm,
    "LTE_NAS_ESM_State": esm,
}


def mobileinsight(lines):
    for line in lines:
        record = json.loads(line)
        moment = datetime.datetime.strptime(record["timestamp"], "%Y-%m-%d %H:%M:%S.%f")
        for metric, fields in RECORDS.get(record["type_id"], lambda _: ())(record):
            if fields:
                yield moment, metric, fields


def expected(lines):
    return mobileinsight(lines) if lines[0].startswith("{") else gnettrack(lines)
