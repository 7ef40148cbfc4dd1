"""modem_test.py BIN RECORDING [--slow]: the live source with the real ModemManager and an emulated AT
modem: what the pages show after each thing that happens to a modem. --slow adds what waits more than a
minute for ModemManager's own timers."""
import itertools
import json
import os
import re
import subprocess
import sys

from at_modem import AtModem
from bus_object import authority
from checks import check, run
from private_bus import PrivateBus, wait_for
from recorded_pages import RecordedPages

BIN = sys.argv[1]
NUMBERS = itertools.count()
MANAGER = "org.freedesktop.ModemManager1"


class Trial(RecordedPages, PrivateBus):
    """A private bus with ModemManager, our service, and a recording of all its events."""

    def __init__(self, *arguments):
        super().__init__(BIN)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.address
        self.authority = authority(self.address)
        self.modem = AtModem(f"quorin{os.getpid()}-{next(NUMBERS)}")
        self.manager = self.start_manager()
        self.basebandd = self.service("--source", "modem", *arguments)
        self.record()

    def __exit__(self, *_):
        self.authority.close()
        self.modem.close()
        super().__exit__()

    def start_manager(self):
        return self.start(
            ["/usr/sbin/ModemManager", "--test-enable", "--test-no-udev", "--no-auto-scan",
             "--test-no-qrtr", "--test-no-suspend-resume"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def command(self, *words):
        return subprocess.run(words, env=self.environment, text=True, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def plug_in(self, stands="not enabled"):
        """Lets ModemManager find the modem; True once it stands so."""
        found = lambda: self.command(
            "dbus-send", f"--bus={self.address}", "--print-reply", f"--dest={MANAGER}",
            "/org/freedesktop/ModemManager1", f"{MANAGER}.Test.SetProfile", "string:emulated",
            "string:generic", f"array:string:abstract:{self.modem.name}").returncode == 0
        return wait_for(found, 10, 0.2) and self.stands(stands, 40)

    def enable(self):
        return self.command("mmcli", "-m", "any", "-e").returncode == 0

    def mmcli(self, *words):
        return json.loads(self.command("mmcli", "-J", *words).stdout)


NORMAL, FAILED, NO_SERVICE = ("reg_status KREG_STATUS_" + name for name in
                              ("NORMAL_SERVICE", "REGISTRATION_FAILURE", "NO_SERVICE"))
IDENTITY = ["num_mnc_digits 2", "sel_plmn_mcc 262", "sel_plmn_mnc 1"]


def a_modem_goes_through_its_day():
    with Trial() as trial:
        modem = trial.modem
        check("without a modem the source says so",
              trial.stands("ModemManager knows no modem"))
        check("it is found", trial.plug_in())
        check("power on", trial.enable() and modem.is_on)
        # Levels as +CESQ tells them: RSRP index 50 is -91 dBm, RSRQ index 20 is -10 dB.
        modem.move("LTE", 0x7D1, 0x1CEAD8F, rsrp=50, rsrq=20)
        trial.shows("registered on LTE", {
            "LTE NAS": [NORMAL, "tai_list [[encoded_plmn: <62f210>, tac: 2001]]"],
            "LTE Serving Cell Info": ["cell_id 30322063", "tracking_area_code 2001", *IDENTITY],
            "LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"],
            "Device Info SIM Files": [
                "ef_id 28423", "content <080910101032547698>", "ef_id 12258",
                "content <98000101214365870951>", "ef_id 28478", "content <01ffffff>"],
            "LTE Active Bearers": [],
        })
        check("it says so", trial.stands("registered, on LTE"))
        mmcli_shows_the_same(trial)
        for name in ("KCellularLteRrcState", "KCellularLteCdrxConfig", "KCellularLteTxPower",
                     "KCellularLteSelReselCellInfo", "KCellularWcdmaRrcConnectionState",
                     "KCellularGsmCsRfMeasurement", "KCellularLteNbrEutraCellMeas"):
            check(f"{name} is not offered", trial.standing(name) == "not offered")

        modem.move("LTE", 0x7D1, 0x1CEAD90, rsrp=60, rsrq=25)
        trial.shows("another cell", {
            "LTE Serving Cell Info": ["cell_id 30322064", "tracking_area_code 2001", *IDENTITY],
            "LTE Serving Cell Meas": ["rsrp0 -81", "rsrq0 -8"]})

        older = ["rai [encoded_plmn: <62f210>, lac: 1001]"]
        modem.move("UMTS", 0x3E9, 0xD30156, rscp=40, ecno=30)
        trial.shows("UMTS", {
            "UMTS NAS GMM": [NORMAL, *older],
            "UMTS NAS MM": [NORMAL, "lai [encoded_plmn: <62f210>, lac: 1001]"],
            "UMTS Serving Cell Info": ["mcc 262", "mnc 1", "lac 1001", "cell_id 13828438",
                                       "num_mnc_digits 2"]})
        check("it says so", trial.stands("registered, on UMTS"))
        mmcli_shows_the_same_older_cell(trial, "UMTS")
        check("LTE's levels are stale", wait_for(
            lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "stale"))
        check("the status line says so",
              re.search(r"KCellularLteRsrpRsrqSinr .* s ago, stale for \d+ s",
                        trial.run("metricctl", "status").stdout))

        modem.move("GSM", 0x3E9, 0x2BAF, rxlev=40)
        trial.shows("GSM", {
            "GSM NAS GMM": [NORMAL, *older],
            "GSM Serving Cell Info": ["mcc 262", "mnc 1", "lac 1001", "cell_id 11183",
                                      "num_mnc_digits 2"],
            # RXLEV 40 is -71 dBm.
            "GSM Idle Serv Cell Meas": ["idle_rxlev_dBm -71"]})
        mmcli_shows_the_same_older_cell(trial, "GSM")
        level = trial.mmcli("-m", "any", "--signal-get")["modem"]["signal"]["gsm"]["rssi"]
        check(f"mmcli says {level} dBm", round(float(level)) == -71)

        modem.move("LTE", 0x7D1, 0x1CEAD8F, status=5, operator="00101", rsrp=50, rsrq=20)
        trial.shows("roaming", {
            "LTE NAS": [NORMAL, "tai_list [[encoded_plmn: <00f110>, tac: 2001]]"],
            "LTE Serving Cell Info": ["cell_id 30322063", "tracking_area_code 2001",
                                      "num_mnc_digits 2", "sel_plmn_mcc 1", "sel_plmn_mnc 1"]})

        check("a bearer comes up", trial.command(
            "mmcli", "-m", "any", "--simple-connect=apn=internet,ip-type=ipv4").returncode == 0)
        trial.shows("a bearer, whose address PPP will tell", {
            "LTE Active Bearers": ["apn internet", "pdp_type PDP_TYPE_IPv4"]})
        check("and down", trial.command("mmcli", "-m", "any", "--simple-disconnect").returncode == 0)
        trial.shows("without bearer", {"LTE Active Bearers": []})

        modem.move("LTE", 0, 0, status=3)
        trial.shows("reject", {"LTE NAS": [FAILED]})
        modem.move("LTE", 0, 0, status=2)
        trial.shows("no service", {"LTE NAS": [NO_SERVICE]})
        check("no levels are live", wait_for(
            lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "stale"))
        modem.move("LTE", 0x7D1, 0x1CEAD8F, rsrp=50, rsrq=20)
        trial.shows("service again", {
            "LTE NAS": [NORMAL, "tai_list [[encoded_plmn: <62f210>, tac: 2001]]"]})


def mmcli_shows_the_same(trial):
    """What both show, in the page's unit: levels to the nearest dB, codes as numbers."""
    pages = trial.pages()
    signal = trial.mmcli("-m", "any", "--signal-get")["modem"]["signal"]["lte"]
    location = trial.mmcli("-m", "any", "--location-get")["modem"]["location"]["3gpp"]
    state = trial.mmcli("-m", "any")["modem"]
    card = trial.mmcli("-i", state["generic"]["sim"])["sim"]["properties"]
    plmn = location["mcc"] + location["mnc"]
    theirs = {
        "LTE Serving Cell Meas": [f"rsrp0 {round(float(signal['rsrp']))}",
                                  f"rsrq0 {round(float(signal['rsrq']))}"],
        "LTE Serving Cell Info": [
            f"cell_id {int(location['cid'], 16)}", f"tracking_area_code {int(location['tac'], 16)}",
            f"num_mnc_digits {len(location['mnc'])}", f"sel_plmn_mcc {int(location['mcc'])}",
            f"sel_plmn_mnc {int(location['mnc'])}"],
    }
    for key, rows in theirs.items():
        check(f"mmcli says {rows} where {key} shows {pages[key]}", pages[key] == rows)
    check("the operator's code is the location's", state["3gpp"]["operator-code"] == plmn)
    check("registered is normal service", state["3gpp"]["registration-state"] == "home"
          and pages["LTE NAS"][0] == NORMAL)
    files = dict(zip(pages["Device Info SIM Files"][::2], pages["Device Info SIM Files"][1::2]))
    digits = lambda key: "".join(pair[::-1] for pair in re.findall("..", files[key][9:-1]))
    check("the card's IMSI", digits("ef_id 28423")[3:] == card["imsi"])
    check("the card's ICCID", digits("ef_id 12258") == card["iccid"])
    check("the card's GID1", files["ef_id 28478"].lower() == f"content <{card['gid1'].lower()}>")


def mmcli_shows_the_same_older_cell(trial, technology):
    location = trial.mmcli("-m", "any", "--location-get")["modem"]["location"]["3gpp"]
    key = f"{technology} Serving Cell Info"
    theirs = [f"mcc {int(location['mcc'])}", f"mnc {int(location['mnc'])}",
              f"lac {int(location['lac'], 16)}", f"cell_id {int(location['cid'], 16)}",
              f"num_mnc_digits {len(location['mnc'])}"]
    check(f"mmcli says {theirs} where {key} shows {trial.pages()[key]}",
          trial.pages()[key] == theirs)


def a_modem_vanishes_and_returns():
    with Trial() as trial:
        check("it is found", trial.plug_in())
        check("power on", trial.enable())
        trial.modem.move("LTE", 0x7D1, 0x1CEAD8F, rsrp=50, rsrq=20)
        check("it registers", trial.stands("registered, on LTE"))
        for round_ in range(3):
            trial.manager.kill()
            trial.manager.wait()
            check("the source sees ModemManager go",
                  trial.stands("there is no ModemManager on the system bus"))
            check("what it gave is stale", wait_for(
                lambda: trial.standing("KCellularEmmContext") == "stale"))
            trial.modem.hang_up()
            trial.manager = trial.start_manager()
            check(f"it is found again, {round_}", trial.plug_in() and trial.enable())
            trial.modem.move("LTE", 0x7D1, 0x100 + round_, rsrp=50 + round_, rsrq=20)
            trial.shows(f"after return {round_}", {
                "LTE Serving Cell Info": [f"cell_id {0x100 + round_}", "tracking_area_code 2001",
                                          *IDENTITY],
                "LTE Serving Cell Meas": [f"rsrp0 {-91 + round_}", "rsrq0 -10"]})
        check("the same service all along", trial.basebandd.poll() is None)


def a_modem_dies_in_the_middle_of_an_answer():
    with Trial() as trial:
        check("it is found", trial.plug_in())
        check("power on", trial.enable())
        trial.modem.move("LTE", 0x7D1, 0x1CEAD8F, rsrp=50, rsrq=20)
        check("it registers", trial.stands("registered, on LTE"))
        trial.modem.dies_at = "AT+CESQ"
        check("its metrics go stale", wait_for(
            lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "stale", 180, 0.5))
        check("the service lives on", trial.basebandd.poll() is None)


def a_card_is_pulled():
    with Trial() as trial:
        trial.modem.has_sim = False
        check("a modem without a card is seen", trial.plug_in(stands="failed"))
        check("no card is made up", trial.standing("KCellularSimCardFiles") == "not offered"
              and trial.standing("KCellularMmCommonInfo") == "not offered")


slow = [a_modem_dies_in_the_middle_of_an_answer] if "--slow" in sys.argv else []
run(a_modem_goes_through_its_day, a_modem_vanishes_and_returns, a_card_is_pulled, *slow)
