"""log_test.py BIN RECORDING: what the service writes of itself holds no identity, in any spelling:
not on its outputs and not to the system's logger, from any source, whoever its clients are."""
import json
import pathlib
import socket
import struct
import subprocess
import sys
import threading

import private_mounts

MAY_MOUNT = private_mounts.enter()

from bus_object import Fault
from checks import check, run
from modem_manager import BEARER, LTE_CELL, MODEM, ROOT, SIM, ModemManager, cell, modem
from private_bus import PrivateBus, wait_for
from raw_bus import RawBus

BIN, RECORDING = sys.argv[1], sys.argv[2]
IMSI, ICCID, IMEI = "262017654321098", "89490200001234567890", "356938035643809"
SIMULATED = ["001010123456789", "89001010123456789015"]
TMSIS = [0xCAFE1234, 0xDEADBEEF, 0xFEEDFACE]
TEXTS = ["anna.private.example", "anna@192.0.2.7", "93.184.216.34", "2a02:26f0:9f00::1f40"]
ADDRESSES = [bytes([93, 184, 216, 34]), bytes.fromhex("2a0226f09f0000000000000000001f40")]


def swapped(digits):
    digits += "f" * (len(digits) % 2)
    return "".join(b + a for a, b in zip(digits[::2], digits[1::2]))


def spellings_of_digits(digits):
    number = int(digits)
    return [digits, swapped(digits), swapped("9" + digits), swapped(digits[5:]),
            swapped(digits[6:]), f"{number:x}", " ".join(digits)]


def spellings_of_bytes(value):
    text = value.hex()
    return [text, text[::-1], value[::-1].hex(), value.hex(" "), value.hex(":"), value.hex(","),
            " ".join(map(str, value)), ",".join(map(str, value)), ", ".join(map(str, value))]


def spellings():
    """Every text, in small letters, by which an identity could be found."""
    found = set(TEXTS)
    for digits in (IMSI, IMSI[5:], ICCID, ICCID[2:], ICCID[:19], IMEI, IMEI[:14], *SIMULATED):
        found |= {text for text in spellings_of_digits(digits) if len(text) >= 8}
    for value in [*ADDRESSES, *(text.encode() for text in TEXTS), bytes.fromhex(swapped(ICCID)),
                  *(number.to_bytes(4, "big") for number in TMSIS), IMSI.encode(), ICCID.encode()]:
        found |= set(spellings_of_bytes(value))
    return found | {str(number) for number in TMSIS}


def identities_in(text, known=spellings()):
    """What of the identities stands in the text, whichever of its bytes are escaped."""
    if isinstance(text, bytes):
        text = text.decode("latin-1") + text.hex()
    return sorted(spelling for spelling in known if spelling in text.lower())


def payload(message_class, **fields):
    encoded = subprocess.run([f"{BIN}/metricctl", "encode", "--class", message_class], text=True,
                             input=json.dumps(fields) + "\n", stdout=subprocess.PIPE, check=True)
    return encoded.stdout.strip()


EVENTS = [
    (3986697, payload("KCellularMmCommonInfo", imsi=swapped("9" + IMSI))),
    (3932179, payload("KCellularSimCardFiles", ef_list=[
        {"ef_id": 0x6F07, "content": "08" + swapped("9" + IMSI)},
        {"ef_id": 0x2FE2, "content": swapped(ICCID)}])),
    (3986698, payload("KCellularMmContext", tmsi=TMSIS[0])),
    (3986699, payload("KCellularGmmContext", p_tmsi=TMSIS[1])),
    (3986700, payload("KCellularEmmContext", guti={"m_tmsi": TMSIS[2]})),
    (3986701, payload("KCellularActivatedBearerContexts", bearer_contexts=[
        {"apn": TEXTS[0], "pdp_addr": ADDRESSES[0].hex()}, {"pdp_addr": ADDRESSES[1].hex()}])),
    (3952490, payload("KCellularLteRsrpRsrqSinr", call_id=TEXTS[1])),
]


def lines_of_a_recording():
    """Every identity, in whole events and in what cannot be read."""
    events = [json.dumps({"kKeyMetricID": metric, "kKeyPayload": hexadecimal, "t": at * 100})
              for at, (metric, hexadecimal) in enumerate(EVENTS)]
    cut = [json.dumps({"kKeyMetricID": metric, "kKeyPayload": hexadecimal[:-2]})
           for metric, hexadecimal in EVENTS]
    hidden = [json.dumps({"kKeyMetricID": 3952132, "kKeyPayload": "9801ffffffff0f7a" +
                          f"{len(IMSI):02x}" + IMSI.encode().hex()}),
              json.dumps({"kKeyMetricID": 7, "kKeyPayload": EVENTS[0][1]}),
              json.dumps({"kKeyMetricID": 3952132, IMSI: ICCID}),
              json.dumps({"kKeyMetricID": 3952132, "kKeyPayload": "z" + IMSI}),
              json.dumps({"kKeyMetricID": 3952132, "t": IMSI}), IMSI, f'{{"{IMSI}', f'["{ICCID}"]']
    return events + cut + hidden


def a_client_of_every_kind(bus):
    """Clients that take events, ask, and send identities in whatever is refused."""
    watch = bus.start([f"{BIN}/metricctl", "watch", "--json"], stdout=subprocess.DEVNULL)
    bus.run("quorin-terminal", "--seconds", "1", "--quiet", "--pages", "Device Info SIM Files")
    feed = pathlib.Path(bus.folder.name, "feed.jsonl")
    feed.write_text("".join(line + "\n" for line in lines_of_a_recording()[:len(EVENTS)]))
    bus.run("metricctl", "replay", "--speed", "0", str(feed))
    with RawBus(bus.address) as hostile:
        for text in (IMSI, TEXTS[0], swapped(ICCID)):
            raw = text.encode()
            for values in [("Perform", "sa{sv}", text, {}),
                           ("Perform", "sa{sv}", "kCommandAddConfiguration", {text: ("s", text)}),
                           ("Perform", "sa{sv}", "kCommandAddConfiguration", {
                               "kKeyAppID": ("x", 2), "kKeyPayloadType": ("x", 0),
                               "kKeyPayload": ("ay", b"[metrics]\nK_" + raw + b" = 1\n")}),
                           ("Perform", "sa{sv}", "kCommandAddConfiguration", {
                               "kKeyAppID": ("x", 2), "kKeyPayloadType": ("x", 0),
                               "kKeyPayload": ("ay", raw)}),
                           ("Perform", "sa{sv}", "kCommandQueryMetric", {
                               "kKeyAppID": ("s", text), "kKeyMetricID": ("s", text)}),
                           ("Feed", "a{sv}", {"kKeyMetricID": ("x", 7),
                                              "kKeyPayload": ("ay", raw)}),
                           ("Feed", "a{sv}", {"kKeyMetricID": ("x", 3952132),
                                              "kKeyPayload": ("ay", raw)}),
                           ("Feed", "a{sv}", {"kKeyMetricID": ("s", text), text: ("s", text)}),
                           ("Feed", "s", text), ("Step", "s", text), ("n" + text[:9], "s", text)]:
                member = values[0] if values[0].isalnum() else "n"
                hostile.call(member, *values[1:])
        hostile.send("EventsOn")
        hostile.call("Status")
        hostile.socket.sendall(b"l\1\0\1" + IMSI.encode() * 4)
    watch.terminate()
    watch.wait()


def simulated(_):
    return ["--source", "simulator", "--seed", "7"]


def recorded(bus, lines=None):
    recording = pathlib.Path(bus.folder.name, "known.jsonl")
    recording.write_text("".join(line + "\n" for line in lines or lines_of_a_recording()))
    return ["--source", "replay", "--recording", str(recording), "--loop"]


class TalkativeModemManager(ModemManager):
    """Tells identities in its errors once it refuses."""

    def _answer(self, path, interface, member, values):
        if self.refused:
            raise Fault(self.refused, f"{member} of {IMSI} at {TEXTS[2]}, card {ICCID}")
        return super()._answer(path, interface, member, values)


def live(bus):
    bus.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
    manager = bus.manager = TalkativeModemManager(bus.address)
    interfaces = modem(0)
    interfaces[MODEM] |= {"EquipmentIdentifier": ("s", IMEI), "OwnNumbers": ("as", [IMSI]),
                          "DeviceIdentifier": ("s", IMEI), "Sim": ("o", f"{ROOT}/SIM/0"),
                          "Bearers": ("ao", [f"{ROOT}/Bearer/0"])}
    manager.add(0, interfaces)
    manager.objects[f"{ROOT}/SIM/0"] = {SIM: {
        "Imsi": ("s", IMSI), "SimIdentifier": ("s", ICCID), "Gid1": ("ay", list(ADDRESSES[0]))}}
    manager.objects[f"{ROOT}/Bearer/0"] = {BEARER: {
        "Connected": ("b", True),
        "Properties": ("a{sv}", {"apn": ("s", TEXTS[0]), "ip-type": ("u", 4)}),
        "Ip4Config": ("a{sv}", {"method": ("u", 2), "address": ("s", TEXTS[2])}),
        "Ip6Config": ("a{sv}", {"method": ("u", 2), "address": ("s", TEXTS[3])})}}
    manager.cells[manager.path(0)] = [cell(LTE_CELL, True, operator_id="26201", earfcn=6300)]
    manager.start()
    return ["--source", "modem"]


def unsettle(bus):
    """The modem's service refuses, goes and comes."""
    before = len(bus.manager.called("GetCellInfo"))
    bus.manager.refused = "org.freedesktop.ModemManager1.Error.Core.Unsupported"
    wait_for(lambda: len(bus.manager.called("GetCellInfo")) > before)
    for refused in (bus.manager.refused, None):
        bus.manager.stop()
        bus.manager.refused = refused
        bus.manager.start()
        wait_for(lambda: "no modem" not in bus.status()["source"], seconds=1)


class Logger:
    """Keeps what each process tells the system's logger."""

    def __init__(self, made):
        self.texts = {}
        self._listen(made)

    def _listen(self, made):
        made.setsockopt(socket.SOL_SOCKET, socket.SO_PASSCRED, 1)
        self.socket = made
        threading.Thread(target=self._take, args=[made], daemon=True).start()

    def _take(self, made):
        while True:
            text, credentials, _, _ = made.recvmsg(1 << 16, socket.CMSG_SPACE(12))
            if not credentials:  # it was shut down
                return made.close()
            process, _, _ = struct.unpack("iii", credentials[0][2])
            self.texts[process] = self.texts.get(process, b"") + text + b"\n"

    def start_anew(self):
        self.texts.clear()
        self.socket.shutdown(socket.SHUT_RDWR)
        self._listen(private_mounts.listen_again_as_system_logger())


def written_by_the_service(source, afterwards, logger):
    """All that the service, at its most talkative, writes while clients come."""
    with PrivateBus(BIN) as bus:
        bus.environment |= {"SYSTEMD_LOG_LEVEL": "debug", "SYSTEMD_LOG_TARGET": "console",
                            "G_MESSAGES_DEBUG": "all"}
        output = pathlib.Path(bus.folder.name, "written")
        with open(output, "wb") as file:
            service = bus.start([f"{BIN}/basebandd", *source(bus)], stdout=file, stderr=file)
        check("the service comes up",
              wait_for(lambda: bus.run("metricctl", "status").returncode == 0))
        a_client_of_every_kind(bus)
        if afterwards:
            afterwards(bus)
        check("what metricctl status shows holds no identity",
              not identities_in(bus.run("metricctl", "status", "--json").stdout))
        given = {metric["class"] for metric in bus.status()["metrics"]}
        check(f"events with identities come: {given}",
              {"KCellularMmCommonInfo", "KCellularSimCardFiles"} <= given)
        service.terminate()
        check("the service ends in order", service.wait(20) == 0)
        return output.read_bytes() + (logger.texts.get(service.pid, b"") if logger else b"")


def check_sources(logger=None):
    for source, afterwards, word in [(simulated, None, b""), (live, unsettle, b"no cell list"),
                                     (recorded, None, b"not JSON")]:
        text = written_by_the_service(source, afterwards, logger)
        check(f"{source.__name__}: it does write: {text[:200]}", word in text)
        check(f"{source.__name__}: no identity is written: {identities_in(text)}",
              not identities_in(text))


def the_search_finds_what_the_application_is_meant_to_log():
    with PrivateBus(BIN) as bus:
        bus.service(*recorded(bus, lines_of_a_recording()[:len(EVENTS)]))
        terminal = bus.run("quorin-terminal", "--seconds", "2", "--quiet")
        found = identities_in(terminal.stderr + terminal.stdout)
        for spelling in (swapped("9" + IMSI), swapped(ICCID), *map(str, TMSIS), TEXTS[0],
                         *(address.hex() for address in ADDRESSES)):
            check(f"{spelling} is found in the application's log", spelling in found)


def nothing_is_written_on_the_outputs():
    check_sources()


def nothing_is_told_to_the_system_logger():
    if not MAY_MOUNT:
        return print("  left out: it takes root and mounts of one's own")
    check_sources(Logger(private_mounts.listen_as_system_logger()))


def a_logger_that_is_started_anew_is_told_every_line():
    if not MAY_MOUNT:
        return print("  left out: it takes root and mounts of one's own")
    logger = Logger(private_mounts.listen_as_system_logger())
    with PrivateBus(BIN) as bus:
        service = bus.start([f"{BIN}/basebandd", *live(bus)])

        def is_told(line):
            return wait_for(lambda: line in logger.texts.get(service.pid, b""))

        check("the logger is told of the modem", is_told(b"basebandd: live modem 0 "))
        logger.start_anew()
        bus.manager.stop()
        check("the new one is told of what comes next", is_told(b"there is no ModemManager"))


run(the_search_finds_what_the_application_is_meant_to_log, nothing_is_written_on_the_outputs,
    nothing_is_told_to_the_system_logger, a_logger_that_is_started_anew_is_told_every_line)
