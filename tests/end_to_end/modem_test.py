"""modem_test.py BIN RECORDING [--slow]: the live source with the real ModemManager and an emulated
AT modem: what the pages show after each thing that happens to a modem. --slow adds what waits more
than a minute for ModemManager's own timers, and fifty restarts instead of three."""
import itertools
import json
import os
import re
import subprocess
import sys
import time

from at_modem import AtModem
from bus_object import BusObject, Fault, authority
from checks import check, run
from private_bus import PrivateBus, resident_kilobytes, wait_for
from recorded_pages import RecordedPages

BIN, SLOW = sys.argv[1], "--slow" in sys.argv
NUMBERS = itertools.count()
MANAGER = "org.freedesktop.ModemManager1"


class Trial(RecordedPages, PrivateBus):
    """A private bus with ModemManager, our service, and a recording of all its events."""

    def __init__(self, suspend="no"):
        super().__init__(BIN)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.address
        self.suspend = suspend
        self.authority = authority(self.address)
        self.modem = AtModem(f"quorin{os.getpid()}-{next(NUMBERS)}")
        self.manager = self.start_manager()
        self.basebandd = self.service("--source", "modem")
        self.record()

    def __exit__(self, *_):
        self.authority.close()
        self.modem.close()
        super().__exit__()

    def start_manager(self):
        suspend = {"no": ["--test-no-suspend-resume"], "quick": ["--test-quick-suspend-resume"],
                   "full": []}[self.suspend]
        return self.start(
            ["/usr/sbin/ModemManager", "--test-enable", "--test-no-udev", "--no-auto-scan",
             "--test-no-qrtr", *suspend], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def command(self, *words):
        return subprocess.run(words, env=self.environment, text=True, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def plug_in(self, stands="not enabled", plugin="generic"):
        """Lets ModemManager find the modem as one of this plugin; True once it stands so."""
        found = lambda: self.command(
            "dbus-send", f"--bus={self.address}", "--print-reply", f"--dest={MANAGER}",
            "/org/freedesktop/ModemManager1", f"{MANAGER}.Test.SetProfile", "string:emulated",
            f"string:{plugin}", f"array:string:abstract:{self.modem.name}").returncode == 0
        return wait_for(found, 10, 0.2) and self.stands(stands, 40)

    def enable(self):
        return self.command("mmcli", "-m", "any", "-e").returncode == 0

    def camps(self):
        """The modem found, enabled and on a cell of LTE; true once the source says so."""
        check("it is found", self.plug_in())
        check("power on", self.enable())
        self.modem.move("LTE", 0x7D1, 0x1CEAD8F, rsrp=50, rsrq=20)
        check("it registers", self.stands("registered, on LTE"))

    def given(self, name):
        """How many metrics of this class the source has given."""
        return sum(metric["count"] for metric in self.status()["metrics"]
                   if metric["class"] == name)

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
        bearer = trial.mmcli("-m", "any")["modem"]["generic"]["bearers"][0]
        theirs = trial.mmcli("-b", bearer)["bearer"]
        check(f"mmcli says {theirs}", theirs["status"]["connected"] == "yes"
              and theirs["properties"]["apn"] == "internet"
              and theirs["properties"]["ip-type"] == "ipv4"
              and theirs["ipv4-config"]["address"] == "--")
        check("and down",
              trial.command("mmcli", "-m", "any", "--simple-disconnect").returncode == 0)
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
    """Also says how long its values were away, in all and beyond ModemManager's own time."""
    rounds, slowest, away = 50 if SLOW else 3, 0, 0
    with Trial() as trial:
        trial.camps()
        trial.shows("before", {"LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"]})
        for round_ in range(rounds):
            killed = time.monotonic()
            trial.manager.kill()
            trial.manager.wait()
            check("the source sees ModemManager go",
                  trial.stands("there is no ModemManager on the system bus"))
            check("what it gave is stale", wait_for(
                lambda: trial.standing("KCellularEmmContext") == "stale"))
            trial.modem.hang_up()
            trial.manager = trial.start_manager()
            check(f"it is found again, {round_}", trial.plug_in() and trial.enable())
            rsrp = 50 + round_ % 2
            trial.modem.move("LTE", 0x7D1, 0x100 + round_, rsrp=rsrp, rsrq=20)
            told = wait_for(lambda: trial.command(
                "mmcli", "-m", "any", "--signal-get").stdout.count(f"rsrp: {rsrp - 141}"), 20, 0.05)
            started = time.monotonic()
            check("ModemManager has its levels", told)
            check("and so has the source", wait_for(
                lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "live"))
            slowest = max(slowest, time.monotonic() - started)
            away = max(away, time.monotonic() - killed)
            trial.shows(f"after return {round_}", {
                "LTE Serving Cell Info": [f"cell_id {0x100 + round_}", "tracking_area_code 2001",
                                          *IDENTITY],
                "LTE Serving Cell Meas": [f"rsrp0 {rsrp - 141}", "rsrq0 -10"]})
            if round_ == 0:
                before = resident_kilobytes(trial.basebandd)
        after = resident_kilobytes(trial.basebandd)
        print(f"  {rounds} restarts: live again at most {slowest:.2f} s after ModemManager, in all "
              f"{away:.2f} s; {before} kB after the first, {after} kB after the last")
        check(f"memory: {before} kB after the first, {after} kB after the last",
              after < before + 2048)
        check("the same service all along", trial.basebandd.poll() is None)


def a_modem_dies_in_the_middle_of_an_answer():
    with Trial() as trial:
        trial.camps()
        trial.shows("before", {"LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"]})
        trial.modem.camp("LTE", 0x7D1, 0x1CEAD8F, rsrp=60, rsrq=20)
        trial.modem.dies_at = "AT+CESQ"
        check("its metrics go stale", wait_for(
            lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "stale", 180, 0.5))
        trial.shows("half an answer is none", {
            "LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"]})
        check("the service lives on", trial.basebandd.poll() is None)


SIM_FILES, SIM_IDENTITY = "KCellularSimCardFiles", "KCellularMmCommonInfo"


def files_of(imsi, iccid):
    return {"Device Info SIM Files": ["ef_id 28423", f"content <{imsi}>", "ef_id 12258",
                                      f"content <{iccid}>", "ef_id 28478", "content <01ffffff>"]}


def the_card_is_gone(trial, given):
    for name in (SIM_FILES, SIM_IDENTITY):
        check(f"{name} goes stale", wait_for(lambda: trial.standing(name) == "stale"))
    check("nothing of the card is sent anew",
          [trial.given(SIM_FILES), trial.given(SIM_IDENTITY)] == given)
    newcomer = trial.run("quorin-terminal", "--seconds", "1", "--quiet", "--pages",
                         "Device Info SIM Files").stdout
    check(f"whoever comes now is given nothing of it: {newcomer}",
          "Device Info SIM Files   never received" in newcomer and "ef_id" not in newcomer)


def a_card_is_pulled_and_another_one_put_in():
    """As modems have it that tell of their card: ModemManager probes them anew."""
    with Trial() as trial:
        check("it is found", trial.plug_in(plugin="cinterion"))
        check("power on", trial.enable())
        trial.shows("with its card", files_of("080910101032547698", "98000101214365870951"))
        given = [trial.given(SIM_FILES), trial.given(SIM_IDENTITY)]
        trial.modem.pull_card()
        check("without card", trial.stands("failed"))
        the_card_is_gone(trial, given)
        trial.modem.put_in_card("262019876543210", "98000101214365870932")
        check("it is found anew", trial.stands("not enabled"))
        trial.shows("another card", files_of("082926108967452301", "98000101214365870932"))
        check("and live", trial.standing(SIM_FILES) == trial.standing(SIM_IDENTITY) == "live")


def a_card_is_pulled_and_nobody_tells():
    """ModemManager looks at the card again when the modem is next enabled, and not before."""
    with Trial() as trial:
        trial.camps()
        trial.shows("with its card", files_of("080910101032547698", "98000101214365870951"))
        given = [trial.given(SIM_FILES), trial.given(SIM_IDENTITY)]
        trial.modem.pull_card()
        card = trial.mmcli("-m", "any")["modem"]["generic"]["sim"]
        check("ModemManager has it still, and so have we",
              card != "--" and trial.standing(SIM_FILES) == "live")
        check("disabled", trial.command("mmcli", "-m", "any", "-d").returncode == 0)
        trial.enable()
        check("without card", trial.stands("failed", 40))
        the_card_is_gone(trial, given)


def a_modem_without_card():
    with Trial() as trial:
        trial.modem.has_sim = False
        check("a modem without a card is seen", trial.plug_in(stands="failed"))
        check("no card is made up", trial.standing(SIM_FILES) == "not offered"
              and trial.standing(SIM_IDENTITY) == "not offered")


class Sleep:
    """What tells ModemManager that the machine goes to sleep, and that it has woken."""
    def __init__(self, trial):
        self.asked = 0
        self.bus = BusObject(trial.address, "org.freedesktop.login1", self._answer)

    def _answer(self, path, interface, member, values):
        if member == "GetAll":
            return "a{sv}", {}
        self.asked += member == "Inhibit"  # ModemManager listens, and does without
        raise Fault("org.freedesktop.DBus.Error.UnknownMethod", member)

    def tell(self, sleeps):
        self.bus.signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                        "PrepareForSleep", "b", sleeps)


def the_machine_sleeps():
    """As ModemManager does it by itself: it gives the modem up, and finds it anew."""
    with Trial(suspend="full") as trial:
        sleep = Sleep(trial)
        trial.camps()
        check("ModemManager listens", wait_for(lambda: sleep.asked))
        trial.shows("before", {"LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"]})
        sleep.tell(True)
        check("the modem is given up", trial.stands("ModemManager knows no modem"))
        for name in ("KCellularLteRsrpRsrqSinr", "KCellularEmmContext", SIM_FILES):
            check(f"{name} goes stale", wait_for(lambda: trial.standing(name) == "stale"))
        trial.modem.hang_up()
        sleep.tell(False)
        check("it is found anew and enabled", trial.plug_in() and trial.enable())
        trial.modem.move("LTE", 0x7D2, 0x100, rsrp=60, rsrq=20)
        trial.shows("after", {
            "LTE NAS": [NORMAL, "tai_list [[encoded_plmn: <62f210>, tac: 2002]]"],
            "LTE Serving Cell Info": ["cell_id 256", "tracking_area_code 2002", *IDENTITY],
            "LTE Serving Cell Meas": ["rsrp0 -81", "rsrq0 -10"]})
        rate = trial.mmcli("-m", "any", "--signal-get")["modem"]["signal"]["refresh"]["rate"]
        check(f"levels are asked for again, every {rate} s", rate == "2")
        enabled = trial.mmcli("-m", "any", "--location-status")["modem"]["location"]["enabled"]
        check(f"and area codes: {enabled}", "3gpp-lac-ci" in enabled)
        for name in ("KCellularLteRsrpRsrqSinr", "KCellularEmmContext", SIM_FILES):
            check(f"{name} is live", trial.standing(name) == "live")
        sleep.bus.close()


def the_machine_sleeps_and_the_modem_goes_on():
    """As ModemManager does it when told to be quick: the modem stays, and is asked on waking."""
    with Trial(suspend="quick") as trial:
        sleep = Sleep(trial)
        trial.camps()
        check("ModemManager listens", wait_for(lambda: sleep.asked))
        trial.shows("before", {"LTE Serving Cell Meas": ["rsrp0 -91", "rsrq0 -10"]})
        sleep.tell(True)
        trial.modem.camp("UMTS", 0x3E9, 0xD30156, rscp=40, ecno=30)
        sleep.tell(False)
        trial.shows("on waking", {"UMTS Serving Cell Info": [
            "mcc 262", "mnc 1", "lac 1001", "cell_id 13828438", "num_mnc_digits 2"]})
        check("the same modem", trial.status()["source"].startswith("live modem 0 "))
        check("what was of LTE is stale", wait_for(
            lambda: trial.standing("KCellularLteRsrpRsrqSinr") == "stale"))
        sleep.bus.close()


run(a_modem_goes_through_its_day, a_modem_vanishes_and_returns, a_modem_without_card,
    a_card_is_pulled_and_another_one_put_in, a_card_is_pulled_and_nobody_tells, the_machine_sleeps,
    the_machine_sleeps_and_the_modem_goes_on,
    *([a_modem_dies_in_the_middle_of_an_answer] if SLOW else []))
