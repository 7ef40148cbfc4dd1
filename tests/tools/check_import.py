#!/usr/bin/env python3
"""Compares a recording with the drive log that it was imported from, both ways.

usage: check_import.py LOG RECORDING METRICCTL

Reads payloads with a decoder of its own and works from field back to log: a field, taken back into
the log's unit, must be the log's value within half a step. Every value that is to be imported must
be there, and nothing else. Then METRICCTL must decode each payload and write it again unchanged,
and play the recording to the end; what its records show must be the log's last values.
"""
import datetime
import json
import re
import subprocess
import sys

sys.dont_write_bytecode = True
from drive_logs import expected  # noqa: E402

# --- Messages: field number -> (name, kind). u unsigned, s signed, e enumeration, b boolean.

QUALITY = {1: ("phy_cell_id", "u"), 4: ("rsrp0", "s"), 5: ("rsrp1", "s"), 7: ("rsrq0", "s"),
           8: ("rsrq1", "s"), 10: ("sinr0", "s"), 11: ("sinr1", "s")}
NEIGHBOUR = {1: ("nbr_earfcn", "u"), 2: ("nbr_phys_cell_id", "u"), 3: ("freq_band_ind", "u"),
             4: ("nbr_rsrp", "s"), 5: ("nbr_rsrq", "s")}
SCC = {1: ("index", "u"), 2: ("state", "e"), 3: ("pci", "u"), 4: ("dl_earfcn", "u"),
       5: ("dl_rf_band", "u"), 6: ("dl_bandwidth", "u"), 7: ("has_uplink", "b"),
       8: ("ul_earfcn", "u"), 9: ("ul_rf_band", "u"), 10: ("ul_bandwidth", "u"),
       11: ("rsrp", "s"), 12: ("rsrq", "s"), 13: ("snr", "s"), 14: ("rssi", "s")}
SCC_RX = {1: ("index", "u"), 2: ("rsrp", "s"), 3: ("rsrq", "s"), 4: ("snr", "s"), 5: ("rssi", "s")}
RX_INFO = {1: ("rssi", "s"), 2: ("rsrp_range", "u"), 3: ("rsrq_range", "u"), 4: ("snr", "s")}
GUTI = {1: ("mmegi", "u"), 2: ("mmec", "u"), 3: ("m_tmsi", "u")}
BEARER = {1: ("cid", "u"), 2: ("nsapi", "u"), 4: ("pdp_type", "e")}
TIME = {1: ("timestamp", "u")}
METRICS = {
    0x3C40C2: {**TIME, 2: ("phy_cell_id", "u"), 3: ("dl_freq", "u"), 4: ("ul_freq", "u"),
               5: ("dl_bw", "u"), 6: ("ul_bw", "u"), 7: ("cell_id", "u"), 8: ("freq_band_ind", "u"),
               9: ("tracking_area_code", "u"), 10: ("num_mnc_digits", "u"),
               11: ("sel_plmn_mcc", "u"), 12: ("sel_plmn_mnc", "u")},
    0x3CD30B: {**TIME, 2: ("pcc_earfcn", "u"), 3: ("scc0_earfcn", "u"), 4: ("scc1_earfcn", "u"),
               5: ("pcc_bandwidth", "u"), 6: ("scc0_bandwidth", "u"), 7: ("scc1_bandwidth", "u")},
    0x3C4F6A: {**TIME, 14: ("avg_values", QUALITY), 15: ("inst_values", QUALITY)},
    0x3CD30F: {**TIME, 2: ("meas_nbr_eutra", NEIGHBOUR)},
    0x3CD313: {**TIME, 2: ("scc_list", SCC)},
    0x3CD317: {**TIME, 2: ("scc_rx_measurement", SCC_RX)},
    0x3CD50C: {**TIME, 2: ("reg_status", "e"), 3: ("update_status", "e"), 6: ("guti", GUTI),
               8: ("reg_proc", "e")},
    0x3CD50D: {**TIME, 2: ("bearer_context_count", "u"), 3: ("bearer_contexts", BEARER)},
    0x3C300C: {**TIME, 4: ("mcc", "u"), 5: ("mnc", "u"), 6: ("lac", "u"), 7: ("cell_id", "u"),
               8: ("wcdma_band", "e"), 9: ("dl_uarfcn", "u"), 10: ("psc", "u"),
               13: ("num_mnc_digits", "u"), 14: ("hspa", "e")},
    0x3CD102: {**TIME, 2: ("connected_mode", "b"), 3: ("rx_info", RX_INFO)},
    0x3C2E0C: {**TIME, 4: ("mcc", "u"), 5: ("mnc", "u"), 6: ("lac", "u"), 7: ("cell_id", "u"),
               8: ("gsm_band", "e"), 9: ("arfcn", "u"), 10: ("bsic", "u"), 11: ("state", "e"),
               13: ("num_mnc_digits", "u")},
    0x3CD002: {**TIME, 2: ("scell_arfcn", "u"), 5: ("idle_rxlev_dBm", "s")},
}


class Bad(Exception):
    pass


def varint(data, at):
    value = shift = 0
    while True:
        if at >= len(data) or shift > 63:
            raise Bad("a truncated varint")
        byte = data[at]
        value |= (byte & 0x7F) << shift
        at, shift = at + 1, shift + 7
        if byte < 0x80:
            return value, at


def decode(data, table, prefix=""):
    """A message as {path: number}; elements of lists are numbered."""
    fields, at, seen = {}, 0, {}
    while at < len(data):
        key, at = varint(data, at)
        if key >> 3 not in table:
            raise Bad(f"field {key >> 3} that no log fills")
        name, kind = table[key >> 3]
        value, at = varint(data, at)
        if isinstance(kind, dict):
            if key & 7 != 2 or at + value > len(data):
                raise Bad(f"{name} is no message")
            index = seen[name] = seen.get(name, -1) + 1
            fields.update(decode(data[at:at + value], kind, f"{prefix}{name}[{index}]."))
            at += value
            continue
        if key & 7 != 0:
            raise Bad(f"{name} is no varint")
        if prefix + name in fields:
            raise Bad(f"{name} twice")
        if kind == "s":
            value = value >> 1 ^ -(value & 1)
        fields[prefix + name] = value
    return fields


# --- The comparison.

def compare(number, moment, metric, fields, line):
    """Each value of the log against the recording's line; gives how many were compared."""
    record = json.loads(line)
    if set(record) != {"kKeyMetricID", "kKeyPayload", "kKeyProfileID", "t"}:
        raise Bad(f"event {number}: keys {sorted(record)}")
    if record["kKeyMetricID"] != metric:
        raise Bad(f"event {number}: metric {record['kKeyMetricID']:#x}, the log gives {metric:#x}")
    milliseconds = (moment - datetime.datetime(1970, 1, 1)) / datetime.timedelta(milliseconds=1)
    got = decode(bytes.fromhex(record["kKeyPayload"]), METRICS[metric])
    for what, value in (("t", record["t"]), ("timestamp", got.pop("timestamp", None))):
        if value is None or abs(value - milliseconds) > 0.5:
            raise Bad(f"event {number}: {what} is {value}, the log says {milliseconds}")
    for path, (value, unit) in fields.items():
        if path not in got:
            raise Bad(f"event {number}: {path} is missing, the log says {value}")
        field = got.pop(path)
        apart = abs(field * unit - value) if unit else abs(field - value)
        tied = unit and abs(apart - unit / 2) < 1e-9
        if apart > unit / 2 + 1e-9 or tied and abs(field * unit) < abs(value):
            raise Bad(f"event {number}: {path} is {field}, the log says {value}")
    if got:
        raise Bad(f"event {number}: the log does not hold {got}")
    return len(fields) + 2


def metricctl(program, arguments, text):
    done = subprocess.run([program, *arguments], input=text, capture_output=True, text=True)
    if done.returncode != 0:
        raise Bad(f"metricctl {arguments[0]} ended with {done.returncode}: {done.stderr[-200:]}")
    return done.stdout


def decodes_unchanged(program, lines):
    payloads = {}
    for line in lines:
        record = json.loads(line)
        payloads.setdefault(record["kKeyMetricID"], []).append(record["kKeyPayload"])
    for metric, sent in payloads.items():
        said = metricctl(program, ["decode", "--id", str(metric)], "\n".join(sent) + "\n")
        answers = said.splitlines()
        if len(answers) != len(sent):
            raise Bad(f"metric {metric:#x}: {len(sent)} payloads, {len(answers)} answers")
        for payload, answer in zip(sent, map(json.loads, answers)):
            if not answer["ok"] or answer["reencoded"] != payload:
                raise Bad(f"metric {metric:#x}: {payload} is not written again as it was read")


# What a record shows of a field, back in the log's unit.
SHOWN = {
    0x3C4F6A: ("myLTE", "RsrpRsrqSinr", {"sinr0": 0.5, "sinr1": 0.5, "rsrp0": 1, "rsrq0": 1}, 1),
    0x3CD30F: ("myLTE", "EutraNbrsMeas", {"nbr_rsrp": 1, "nbr_rsrq": 0.5, "nbr_earfcn": 0}, 1),
    0x3CD313: ("myLTE", "CAStatusList", {"rsrp": 1, "rsrq": 0.01, "rssi": 1, "dl_earfcn": 0}, 2),
    0x3CD317: ("myLTE", "SecondaryCellMeasList", {"rsrp": 1, "rsrq": 0.01, "rssi": 1}, 2),
    0x3CD102: ("myUMTS", "rXInfo", {"rssi": 1}, 1),
}


def shows_the_last_values(program, lines, last):
    records = json.loads(metricctl(program, ["intake", "--quiet", "--dump", "records"],
                                   "".join(line + "\n" for line in lines)))
    shown = 0
    for metric, (record, member, units, halves) in SHOWN.items():
        for path, (value, _) in last.get(metric, {}).items():
            element = re.fullmatch(r"\w+\[(\d+)\]\.(\w+)", path)
            if not element or element[2] not in units:
                continue
            seen = records[record][member][int(element[1])][element[2]]
            if abs(seen - value) > units[element[2]] * halves / 2 + 1e-6:
                raise Bad(f"{record}.{member} shows {element[2]} {seen}, the log says {value}")
            shown += 1
    return shown


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    log, recording, program = sys.argv[1:]
    with open(log, encoding="utf-8", newline="") as file:
        wanted = list(expected(file.read().replace("\r\n", "\n").rstrip("\n").split("\n")))
    with open(recording, encoding="utf-8") as file:
        lines = file.read().splitlines()
    values, last = 0, {}
    for number, ((moment, metric, fields), line) in enumerate(zip(wanted, lines), 1):
        values += compare(number, moment, metric, fields, line)
        last[metric] = fields
    if len(wanted) != len(lines):
        raise Bad(f"{len(lines)} events, the log gives {len(wanted)}")
    decodes_unchanged(program, lines)
    shown = shows_the_last_values(program, lines, last)
    print(f"{len(lines)} events, {values} values compared, {shown} shown: all as the log says")


if __name__ == "__main__":
    try:
        main()
    except Bad as reason:
        print(f"check_import: {reason}", file=sys.stderr)
        sys.exit(1)
