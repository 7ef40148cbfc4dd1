"""modem_readings_test.py BIN RECORDING [--slow]: the live source with a stand-in of ModemManager:
cell lists, bearers, several modems, NR, unknown values, restarts, and a day's changes. --slow adds
what waits for a cell list that does not come any more."""
import ipaddress
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

from checks import check, run
from modem_manager import (BEARER, GSM, GSM_CELL, LOCATION, LTE, LTE_CELL, MODEM, NAME, NETWORK, NR,
                           NR_CELL, ROOT, SIGNAL, SIM, UMTS, UMTS_CELL, ModemManager, cell, modem)
from private_bus import PrivateBus, resident_kilobytes, wait_for
from raw_bus import ERROR, RawBus
from recorded_pages import RecordedPages

BIN, SLOW = sys.argv[1], "--slow" in sys.argv
UMTS_SCELL_MEAS, ACTIVE_BEARER = 0x3CD102, 0x3CD50D
IDENTITY = ["num_mnc_digits 2", "sel_plmn_mcc 262", "sel_plmn_mnc 1"]
NEIGHBOURS = [
    cell(LTE_CELL, earfcn=1300, physical_ci="64", rsrp=-101.0, rsrq=-12.5),
    cell(UMTS_CELL, uarfcn=10562, psc=7, rscp=-88.6, ecio=-7.5),
    cell(GSM_CELL, arfcn=62, base_station_id="3F", rx_level=31),
]


class Trial(RecordedPages, PrivateBus):
    def __init__(self, *arguments, modems=None, policies=""):
        super().__init__(BIN, policies)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.address
        self.manager = ModemManager(self.address)
        for number, interfaces in (modems or {0: modem(0)}).items():
            self.manager.add(number, interfaces)
        self.manager.start()
        self.log = tempfile.TemporaryFile("w+")
        self.basebandd = self.service("--source", "modem", *arguments, stderr=self.log)
        self.record()

    def levels(self, **technologies):
        self.manager.change(self.manager.path(0), SIGNAL, **{
            name: ("a{sv}", {key: ("d", float(level)) for key, level in levels.items()})
            for name, levels in technologies.items()})

    def contents(self, metric_id, count=None):
        """The contents of the metrics of this ID, oldest first: of the last `count`, or all."""
        with open(self.recording) as recording:
            events = [json.loads(line) for line in recording if line.endswith("\n")]
        payloads = [event["kKeyPayload"] for event in events
                    if event["kKeyMetricID"] == metric_id]
        return [json.loads(self.run("metricctl", "decode", "--id", str(metric_id),
                                    input=payload).stdout)["dict"]
                for payload in payloads[-count if count else 0:]]

    def latest(self, metric_id):
        """The content of the latest metric of this ID; empty: there was none."""
        return (self.contents(metric_id, 1) or [{}])[0]

    def mmcli(self, *words):
        return json.loads(subprocess.run(["mmcli", "-J", *words], env=self.environment, text=True,
                                         timeout=60, stdout=subprocess.PIPE,
                                         stderr=subprocess.DEVNULL).stdout)


def a_cell_list_fills_the_pages():
    with Trial() as trial:
        path = trial.manager.path(0)
        check("signal updates are asked for",
              wait_for(lambda: (path, [2]) in trial.manager.called("Setup")))
        check("the area is asked for, and what others asked for stays",
              wait_for(lambda: (path, [3, False]) in trial.manager.called("Setup")))
        trial.manager.cells[path] = [
            *NEIGHBOURS, cell(LTE_CELL, True, operator_id="26201", tac="7D1", ci="1CEAD8F",
                              physical_ci="1A0", earfcn=6300, rsrp=-95.0, rsrq=-10.0)]
        trial.shows("LTE", {
            "LTE Serving Cell Info": [
                "phy_cell_id 416", "dl_freq 6300", "ul_freq 24300", "cell_id 30322063",
                "freq_band_ind 20", "tracking_area_code 2001", *IDENTITY],
            "LTE LTE Neighbor Cell Meas": ["nbr_earfcn 1300", "nbr_phys_cell_id 100",
                                           "freq_band_ind 3", "nbr_rsrp -101", "nbr_rsrq -12.5"],
            "LTE UMTS Neighbor Cell Meas": ["uarfcn 10562", "psc 7", "rscp -89", "ecno 17.0"],
            "LTE GSM Neighbor Cell Meas": ["arfcn 62", "bsic 63", "rxlev 31"]})
        mmcli_shows_the_same_cells(trial, "LTE")
        trial.levels(Lte={"rsrp": -95.4, "rsrq": -10.0, "snr": 12.4, "rssi": -65})
        # Half dB: 12.4 dB are 25 halves.
        trial.shows("LTE levels", {"LTE Serving Cell Meas": [
            "phy_cell_id 416", "rsrp0 -95", "rsrq0 -10", "sinr0 12.5"]})

        trial.manager.cells[path] = [
            cell(UMTS_CELL, True, operator_id="26201", lac="3E9", ci="D30156", uarfcn=2950, psc=17),
            *NEIGHBOURS]
        trial.manager.change(path, MODEM, AccessTechnologies=("u", UMTS))
        trial.levels(Lte={}, Umts={"rssi": -71.2, "rscp": -80.0, "ecio": -6.0})
        trial.shows("UMTS", {
            "UMTS Serving Cell Info": [
                "mcc 262", "mnc 1", "lac 1001", "cell_id 13828438",
                "wcdma_band SYS_BAND_WCDMA_VIII_900", "dl_uarfcn 2950", "psc 17",
                "num_mnc_digits 2"],
            "UMTS Serving Cell Meas": ["Come back later "],
            "UMTS UMTS Neighbor Cell Meas": ["uarfcn 10562", "band 1", "psc 7", "ecno 17.0",
                                             "rscp -89"],
            "UMTS GSM Neighbor Cell Meas": ["arfcn 62", "bsic 63", "rxlev 31"],
            "UMTS LTE Neighbor Cell Meas": ["earfcn 1300", "phy_cell_id 100", "eutra_band 3",
                                            "rsrp -101", "rsrq -12.5"]})
        mmcli_shows_the_same_cells(trial, "UMTS")
        # Of no page: the level stands in the metric.
        theirs = trial.mmcli("-m", "0", "--signal-get")["modem"]["signal"]["umts"]["rssi"]
        received = lambda: trial.latest(UMTS_SCELL_MEAS).get("rx_info")
        check("the metric has the level", wait_for(lambda: received() == [{"rssi": -71}]))
        check(f"mmcli says {theirs} dBm", theirs == "-71.20")
        trial.levels(Umts={"rssi": -32768})
        check("an unknown level is stale", wait_for(
            lambda: trial.standing("KCellularWcdmaScellMeasurement") == "stale"))
        trial.levels(Umts={"rssi": -80.6})
        check("and a new one live", wait_for(lambda: received() == [{"rssi": -81}]))

        trial.manager.cells[path] = [
            cell(GSM_CELL, True, operator_id="26201", lac="3E9", ci="2BAF", arfcn=700,
                 base_station_id="A", rx_level=40), *NEIGHBOURS]
        trial.manager.change(path, MODEM, AccessTechnologies=("u", GSM))
        trial.levels(Umts={}, Gsm={"rssi": -71.0})
        trial.shows("GSM, on a number of two bands", {
            "GSM Serving Cell Info": ["mcc 262", "mnc 1", "lac 1001", "cell_id 11183", "arfcn 700",
                                      "bsic 10", "num_mnc_digits 2"],
            "GSM Idle Serv Cell Meas": ["scell_arfcn 700", "idle_rxlev_dBm -71"],
            "GSM GSM Neighbor Cell Meas": ["bsic 63", "arfcn 62", "rxlev 31"]})
        mmcli_shows_the_same_cells(trial, "GSM")


number, hexadecimal = int, lambda text: int(text, 16)
level = lambda text: round(float(text))
halves = lambda text: f"{round(2 * float(text)) / 2:.1f}"
# The index of 3GPP TS 25.133 9.1.2, as the page has it: halved.
ecno_index = lambda text: f"{(int((float(text) + 24) / 0.5) + 1) / 2:.1f}"
# What mmcli prints of a cell, and the row that a page has of it, by (mmcli's type, serving).
LTE_ROWS = {"earfcn": [("nbr_earfcn", number)], "physical ci": [("nbr_phys_cell_id", hexadecimal)],
            "rsrp": [("nbr_rsrp", level)], "rsrq": [("nbr_rsrq", halves)]}
UMTS_ROWS = {"uarfcn": [("uarfcn", number)], "psc": [("psc", number)], "rscp": [("rscp", level)],
             "ecio": [("ecno", ecno_index)]}
GSM_ROWS = {"arfcn": [("arfcn", number)], "base station id": [("bsic", hexadecimal)],
            "rx level": [("rxlev", number)]}
OPERATOR_ROWS = [("mcc", lambda plmn: int(plmn[:3])), ("mnc", lambda plmn: int(plmn[3:]))]
PRINTED = {
    "LTE": {
        ("lte", "yes"): ("LTE Serving Cell Info", {
            "tac": [("tracking_area_code", hexadecimal)], "ci": [("cell_id", hexadecimal)],
            "physical ci": [("phy_cell_id", hexadecimal)], "earfcn": [("dl_freq", number)],
            "operator id": [(f"sel_plmn_{key}", part) for key, part in OPERATOR_ROWS]}),
        ("lte", "no"): ("LTE LTE Neighbor Cell Meas", LTE_ROWS),
        ("umts", "no"): ("LTE UMTS Neighbor Cell Meas", UMTS_ROWS),
        ("gsm", "no"): ("LTE GSM Neighbor Cell Meas", GSM_ROWS)},
    "UMTS": {
        ("umts", "yes"): ("UMTS Serving Cell Info", {
            "lac": [("lac", hexadecimal)], "ci": [("cell_id", hexadecimal)],
            "uarfcn": [("dl_uarfcn", number)], "psc": [("psc", number)],
            "operator id": OPERATOR_ROWS}),
        ("umts", "no"): ("UMTS UMTS Neighbor Cell Meas", UMTS_ROWS),
        ("gsm", "no"): ("UMTS GSM Neighbor Cell Meas", GSM_ROWS),
        ("lte", "no"): ("UMTS LTE Neighbor Cell Meas", {
            "earfcn": [("earfcn", number)], "physical ci": [("phy_cell_id", hexadecimal)],
            "rsrp": [("rsrp", level)], "rsrq": [("rsrq", halves)]})},
    "GSM": {
        ("gsm", "yes"): ("GSM Serving Cell Info", {
            "lac": [("lac", hexadecimal)], "ci": [("cell_id", hexadecimal)],
            "arfcn": [("arfcn", number)], "base station id": [("bsic", hexadecimal)],
            "operator id": OPERATOR_ROWS}),
        ("gsm", "no"): ("GSM GSM Neighbor Cell Meas", GSM_ROWS)},
}


def mmcli_shows_the_same_cells(trial, technology):
    """Every number that mmcli prints of a cell stands in the page's unit on its page."""
    pages, compared = trial.pages(), set()
    for line in trial.mmcli("-m", "0", "--get-cell-info")["modem"]["generic"]["cell-info"]:
        printed = dict(part.split(": ") for part in line.split(", "))
        kind = printed.pop("cell type"), printed.pop("serving")
        if kind not in PRINTED[technology]:
            continue
        page, rows = PRINTED[technology][kind]
        for key, text in printed.items():
            for name, convert in rows.get(key, []):
                compared.add((page, name))
                check(f"mmcli says {key} {text} where {page} shows {pages[page]}",
                      f"{name} {convert(text)}" in pages[page])
    missing = {(page, name) for page, rows in PRINTED[technology].values()
               for values in rows.values() for name, _ in values} - compared
    check(f"mmcli prints {missing}", not missing)


def unknown_values_stay_absent():
    with Trial() as trial:
        path = trial.manager.path(0)
        trial.manager.cells[path] = [
            cell(LTE_CELL, True, operator_id="", tac="FFFE", ci="FFFFFFFF", physical_ci="",
                 earfcn=0xFFFFFFFF, rsrp=-32768.0, rsrq=float("nan")),
            cell(LTE_CELL, earfcn=0xFFFFFFFF, physical_ci="", rsrp=-32768.0, rsrq=float("nan")),
            cell(LTE_CELL, earfcn=1300, physical_ci="64", rsrp=-32768.0, rsrq=float("nan"))]
        trial.levels(Lte={"rsrp": -32768, "rsrq": float("nan"), "snr": 4294967295})
        trial.shows("only what is known", {
            "LTE Serving Cell Info": IDENTITY,
            "LTE LTE Neighbor Cell Meas": ["nbr_earfcn 1300", "nbr_phys_cell_id 100",
                                           "freq_band_ind 3"]})
        check("levels that are none do not come",
              trial.standing("KCellularLteRsrpRsrqSinr") == "not offered")


def bearers_come_and_go():
    with Trial() as trial:
        path, bearer = trial.manager.path(0), f"{ROOT}/Bearer/0"
        trial.manager.objects[bearer] = {BEARER: {
            "Connected": ("b", False),
            "Properties": ("a{sv}", {"apn": ("s", "internet"), "ip-type": ("u", 4)}),
            "Ip4Config": ("a{sv}", {}), "Ip6Config": ("a{sv}", {})}}
        trial.manager.change(path, MODEM, Bearers=("ao", [bearer]))
        trial.shows("a bearer that is not up", {"LTE Active Bearers": []})
        check("it is read", wait_for(lambda: (bearer, [BEARER]) in trial.manager.called("GetAll")))
        time.sleep(0.2)
        trial.manager.change(
            bearer, BEARER, Connected=("b", True),
            Ip4Config=("a{sv}", {"method": ("u", 2), "address": ("s", "10.64.0.9"),
                                 "prefix": ("u", 30), "dns1": ("s", "10.64.0.1"),
                                 "dns2": ("s", "10.64.0.2")}),
            Ip6Config=("a{sv}", {"method": ("u", 2), "address": ("s", "2001:db8::9")}))
        trial.shows("up", {"LTE Active Bearers": [
            "apn internet", "pdp_type PDP_TYPE_IPv4v6",
            "pdp_addr <0a40000920010db8000000000000000000000009>",
            "primary_dns_type PDP_TYPE_IPv4", "primary_dns_addr <0a400001>",
            "secondary_dns_type PDP_TYPE_IPv4", "secondary_dns_addr <0a400002>"]})
        mmcli_shows_the_same_bearer(trial, bearer)
        trial.manager.change(bearer, BEARER, Connected=("b", False), Ip4Config=("a{sv}", {}),
                             Ip6Config=("a{sv}", {}))
        trial.shows("down", {"LTE Active Bearers": []})


def bearers_stay_while_others_come_and_go():
    with Trial() as trial:
        path, bearers = trial.manager.path(0), [f"{ROOT}/Bearer/{number}" for number in range(3)]
        for number, bearer in enumerate(bearers):
            trial.manager.objects[bearer] = {BEARER: {
                "Connected": ("b", True), "Properties": ("a{sv}", {}),
                "Ip4Config": ("a{sv}", {"method": ("u", 2), "address": ("s", f"10.64.0.{number}")}),
                "Ip6Config": ("a{sv}", {})}}
        for held, addresses in (([0], ["0a400000"]), ([0, 1], ["0a400000", "0a400001"]),
                                ([1], ["0a400001"]), ([1, 2], ["0a400001", "0a400002"])):
            trial.manager.change(path, MODEM, Bearers=("ao", [bearers[i] for i in held]))
            trial.shows(f"bearers {held}", {
                "LTE Active Bearers": [f"pdp_addr <{address}>" for address in addresses]})
        told = [[bearer["pdp_addr"] for bearer in content.get("bearer_contexts", [])]
                for content in trial.contents(ACTIVE_BEARER)]
        first, second, third = "0a400000", "0a400001", "0a400002"
        check(f"nothing else is told between: {told}", told[told[0] == []:] ==
              [[first], [first, second], [second], [second, third]])


def a_card_leaves_a_modem_that_stays():
    def sim(number, imsi):
        path = f"{ROOT}/SIM/{number}"
        trial.manager.objects[path] = {SIM: {"Imsi": ("s", imsi), "SimIdentifier": ("s", "")}}
        trial.manager.change(trial.manager.path(0), MODEM, Sim=("o", path))

    with Trial() as trial:
        files = "KCellularSimCardFiles"
        given = lambda: [metric["count"] for metric in trial.status()["metrics"]
                         if metric["class"] == files]
        sim(0, "001010123456789")
        first = {"Device Info SIM Files": ["ef_id 28423", "content <080910101032547698>"]}
        trial.shows("a card", first)
        trial.manager.change(trial.manager.path(0), MODEM, Sim=("o", "/"))
        check("without it its values are stale",
              wait_for(lambda: trial.standing(files) == "stale"))
        check("and no others", trial.standing("KCellularEmmContext") == "live")
        time.sleep(6)  # longer than it takes to ask again
        check(f"nothing of it is sent anew: {given()}", given() == [1])
        trial.shows("a page keeps what it was told", first)
        sim(1, "262019876543210")
        trial.shows("another card", {
            "Device Info SIM Files": ["ef_id 28423", "content <082926108967452301>"]})
        check("is live", trial.standing(files) == "live")


def mmcli_shows_the_same_bearer(trial, bearer):
    theirs = trial.mmcli("-b", bearer)["bearer"]
    packed = lambda *texts: "<" + "".join(ipaddress.ip_address(text).packed.hex()
                                          for text in texts) + ">"
    ipv4, ipv6 = theirs["ipv4-config"], theirs["ipv6-config"]
    kind = theirs["properties"]["ip-type"].replace("ipv", "IPv")
    shown = trial.pages()["LTE Active Bearers"]
    for row in [f"apn {theirs['properties']['apn']}", f"pdp_type PDP_TYPE_{kind}",
                f"pdp_addr {packed(ipv4['address'], ipv6['address'])}",
                f"primary_dns_addr {packed(ipv4['dns'][0])}",
                f"secondary_dns_addr {packed(ipv4['dns'][1])}"]:
        check(f"mmcli says {row} where the page shows {shown}", row in shown)


def a_modem_on_nr_is_said_to_be():
    with Trial(modems={0: modem(0, access=NR)}) as trial:
        trial.manager.cells[trial.manager.path(0)] = [
            cell(NR_CELL, True, operator_id="26201", tac="7D1", nrarfcn=627264)]
        check("status says so", trial.stands("registered, on NR, not represented"))
        for name in ("KCellularEmmContext", "KCellularMmContext", "KCellularLteScellInfo"):
            check(f"{name} does not come", trial.standing(name) == "not offered")
        trial.manager.change(trial.manager.path(0), MODEM, AccessTechnologies=("u", NR | LTE))
        check("beside LTE it is on LTE", trial.stands("registered, on LTE"))
        trial.basebandd.terminate()
        check("the service ends in order", trial.basebandd.wait(20) == 0)
        trial.log.seek(0)
        noted = [line for line in trial.log.read().splitlines() if "live modem" in line]
        modem_0 = "basebandd: live modem 0 (Quorin Stand-in), registered, on "
        check(f"the log has each change once: {noted}", noted[-2:] == [
            modem_0 + "NR, not represented", modem_0 + "LTE"] and len(set(noted)) == len(noted))


def one_of_several_modems_is_followed():
    two = lambda: {0: modem(0, state=3), 1: modem(1, model="Second"), 2: modem(2, model="Third")}
    with Trial(modems=two()) as trial:
        check("the first enabled one", wait_for(lambda: "modem 1 " in trial.status()["source"]))
        trial.manager.change(trial.manager.path(0), MODEM, State=("i", 8))
        time.sleep(0.3)
        check("it goes on with it", "modem 1 " in trial.status()["source"])
        trial.manager.remove(1)
        check("until it vanishes", wait_for(lambda: "modem 0 " in trial.status()["source"]))
    for name in ("2", "/sys/devices/modem2", "Third", f"{ROOT}/Modem/2"):
        with Trial("--modem", name, modems=two()) as trial:
            check(f"the one named {name}", wait_for(lambda: "modem 2 " in trial.status()["source"]))
            trial.manager.remove(2)
            check("and no other", trial.stands(f"ModemManager knows no modem '{name}'"))


def what_others_set_up_stays():
    """The area code is asked for beside what is enabled; signals only where others wanted them."""
    for name, enabled, signals, asked in [
            ("a position", 2, True, [3, True]), ("no signals of it", 2, False, [3, False]),
            ("nothing", 0, None, [1, False]), ("the area code", 1, True, None)]:
        interfaces = modem(0)
        interfaces[LOCATION]["Enabled"] = ("u", enabled)
        interfaces[LOCATION]["SignalsLocation"] = ("b", signals)
        if signals is None:
            del interfaces[LOCATION]["SignalsLocation"]
        with Trial(modems={0: interfaces}) as trial:
            path = trial.manager.path(0)
            check(f"levels are asked for where others asked for {name}",
                  wait_for(lambda: (path, [2]) in trial.manager.called("Setup")))
            check("and cells, after the area code",
                  wait_for(lambda: trial.manager.called("GetCellInfo")))
            setups = [values for _, values in trial.manager.called("Setup") if values != [2]]
            check(f"the area code: {setups}", setups == ([asked] if asked else []))


def a_cell_list_that_is_not_offered_is_asked_for_once():
    with Trial(modems={0: modem(0, state=3)}) as trial:
        trial.manager.refused = "org.freedesktop.ModemManager1.Error.Core.Unsupported"
        trial.manager.change(trial.manager.path(0), MODEM, State=("i", 8))
        check("it is asked for", wait_for(lambda: trial.manager.called("GetCellInfo")))
        time.sleep(6)
        check("once", len(trial.manager.called("GetCellInfo")) == 1)
        check("the neighbours are not offered",
              trial.standing("KCellularLteNbrEutraCellMeas") == "not offered")


def a_cell_list_that_does_not_come_any_more_goes_stale():
    with Trial() as trial:
        path = trial.manager.path(0)
        trial.manager.cells[path] = NEIGHBOURS
        trial.shows("cells", {"LTE GSM Neighbor Cell Meas": ["arfcn 62", "bsic 63", "rxlev 31"]})
        trial.manager.refused = "org.freedesktop.ModemManager1.Error.Core.Retry"
        started = time.monotonic()
        check("the neighbours go stale", wait_for(
            lambda: trial.standing("KCellularLteNbrEutraCellMeas") == "stale", 60, 0.5))
        waited = time.monotonic() - started
        check(f"not before three polls without a list: {waited:.0f} s", waited > 14)
        trial.manager.refused = None
        check("and are asked for all along", wait_for(
            lambda: trial.standing("KCellularLteNbrEutraCellMeas") == "live"))


def fifty_restarts_lose_nothing():
    with Trial() as trial:
        for round_ in range(50):
            trial.manager.stop()
            check("it is seen to go", trial.stands("no ModemManager on the system bus"))
            trial.manager.objects[trial.manager.path(0)][NETWORK]["RegistrationState"] = (
                "u", 1 if round_ % 2 else 3)
            trial.manager.start()
            check("and to come", trial.stands("registered, on LTE"))
            status = "NORMAL_SERVICE" if round_ % 2 else "REGISTRATION_FAILURE"
            trial.shows(f"restart {round_}", {"LTE NAS": [
                f"reg_status KREG_STATUS_{status}", "ue_op_mode EPS_UE_OP_MODE_PS_MODE_2"]})
        check("the same service all along", trial.basebandd.poll() is None)


def a_days_changes_leave_the_memory_flat():
    """A level every two seconds of a day; every hundred a registration and a bearer that move."""
    changes = 86_400 // 2
    with Trial() as trial:
        path = trial.manager.path(0)
        given = lambda: sum(metric["count"] for metric in trial.status()["metrics"])

        def work(count):
            for i in range(count):
                trial.levels(Lte={"rsrp": -80 - i % 40, "rsrq": -10, "snr": i % 20})
                if i % 50 == 0:
                    trial.manager.change(path, NETWORK,
                                         RegistrationState=("u", 1 if i % 100 else 3))
                    trial.manager.objects.pop(f"{ROOT}/Bearer/{i - 50}", None)
                    bearer = f"{ROOT}/Bearer/{i}"
                    trial.manager.objects[bearer] = {BEARER: {"Connected": ("b", True)}}
                    trial.manager.change(path, MODEM, Bearers=("ao", [bearer]))
                if i % 20 == 0:
                    trial.status()  # answered once what was before it is read

        work(changes // 10)
        before = resident_kilobytes(trial.basebandd)
        work(changes)
        after, count = resident_kilobytes(trial.basebandd), given()
        print(f"  {before} kB before, {after} kB after {changes} changes, {count} metrics")
        check(f"they come: {count}", count > changes // 20)
        check(f"memory: {before} kB before, {after} kB after", after < before + 2048)


def the_policy_opens_what_is_read_and_nothing_else():
    shipped = pathlib.Path(__file__).parents[2] / "packaging/org.quorin.basebandd.ModemManager.conf"
    policy = re.search("<policy.*</policy>", shipped.read_text(), re.S)[0].replace(
        'user="basebandd"', f'user="{os.getuid()}"')
    with Trial(policies=policy) as trial:
        path = trial.manager.path(0)
        trial.manager.locations[path] = "262,01,0,1CEAD8F,7D1"
        trial.manager.cells[path] = [cell(LTE_CELL, True, earfcn=6300)]
        trial.shows("what the source needs is open", {"LTE Serving Cell Info": [
            "dl_freq 6300", "ul_freq 24300", "cell_id 30322063", "freq_band_ind 20",
            "tracking_area_code 2001", *IDENTITY]})
        check("levels are asked for", (path, [2]) in trial.manager.called("Setup"))
        with RawBus(trial.address) as client:
            for interface, member, *values in [
                    (MODEM, "Enable", "b", 0), (MODEM, "Reset"),
                    (MODEM, "CreateBearer", "a{sv}", {}),
                    (NETWORK, "Scan"), (SIM, "SendPin", "s", "0000"), (BEARER, "Connect"),
                    (MODEM + ".Messaging", "List"), (MODEM + ".Command", "Command")]:
                kind, body = client.call(member, *values, path=path, interface=interface,
                                         destination=NAME)
                check(f"{member} is refused: {body}",
                      kind == ERROR and b"org.freedesktop.ModemManager1" in body)
                check(f"{member} does not arrive", not trial.manager.called(member))


run(the_policy_opens_what_is_read_and_nothing_else, a_cell_list_fills_the_pages,
    unknown_values_stay_absent, bearers_come_and_go, bearers_stay_while_others_come_and_go,
    a_card_leaves_a_modem_that_stays,
    a_modem_on_nr_is_said_to_be, one_of_several_modems_is_followed,
    what_others_set_up_stays, a_cell_list_that_is_not_offered_is_asked_for_once,
    fifty_restarts_lose_nothing, a_days_changes_leave_the_memory_flat,
    *([a_cell_list_that_does_not_come_any_more_goes_stale] if SLOW else []))
