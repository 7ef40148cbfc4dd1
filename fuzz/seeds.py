#!/usr/bin/env python3
"""seeds.py TARGET FOLDER: writes a fuzz target's seeds, made from the tests and from the drive that ships
with the application."""
import hashlib
import json
import pathlib
import re
import struct
import sys

import tables

sys.path.insert(0, str(tables.ROOT / "tests/end_to_end"))
from raw_bus import write  # noqa: E402

DRIVE = [json.loads(line) for line in tables.text_of("app/resources/drive.jsonl").splitlines()]
CLASSES = list(tables.classes())
CLASS_OF = {metric: name for name, (metric, _) in tables.classes().items() if metric}
INDEX_OF = {metric: index for index, metric in enumerate(tables.metric_ids().values())}


def chunk(content):
    """As Input::chunk reads it."""
    if len(content) < 255:
        return bytes([len(content)]) + content
    return b"\xff" + struct.pack("<H", len(content)) + content


def payloads():
    """(metric ID, payload) of the drive and of the tests' samples."""
    for event in DRIVE:
        yield event["kKeyMetricID"], bytes.fromhex(event["kKeyPayload"])
    yield from tables.sample_metrics().items()


def hexadecimal_rows(*paths):
    """(class, payload) of the tests' tables: a class's name, and hexadecimal shortly behind it."""
    for path in paths:
        latest = None
        for literal in tables.literals(path):
            if literal in CLASSES:
                latest = literal
            elif latest and re.fullmatch(r"([0-9a-f]{2} ?)+", literal):
                yield latest, bytes.fromhex(literal)


def messages():
    for metric, payload in payloads():
        yield bytes([CLASSES.index(CLASS_OF[metric])]) + payload
    for name, payload in hexadecimal_rows("tests/messages/read_test.cc", "tests/messages/write_test.cc",
                                          "tests/differential/differential_test.cc"):
        yield bytes([CLASSES.index(name)]) + payload


def merges():
    for seed in messages():
        yield seed[:1] + chunk(seed[1:]) + seed[1:]


def event(metric, payload):
    """As eventFrom reads it."""
    return bytes([0, INDEX_OF[metric]]) + chunk(payload)


def intake():
    everything = b""
    for metric, payload in payloads():
        yield b"\1" + event(metric, payload)
    for metric, payload in tables.sample_metrics().items():
        everything += b"\1" + event(metric, payload)
        if len(everything) > 600:
            yield everything
            everything = b""


def pages():
    # Technologies and categories are pressed by their line; the first page has four of them.
    deliver, press, back, wait = b"\0", b"\2", b"\4", b"\5\0"
    samples = [deliver + event(metric, payload) for metric, payload in tables.sample_metrics().items()]
    for technology in range(4):
        for category in range(16):
            opened = press + bytes([0, technology]) + press + bytes([1, category])
            yield opened + wait
            for sample in samples:
                yield opened + sample + wait + back
    yield b"".join(samples)[:2000]


def recording():
    lines = tables.text_of("app/resources/drive.jsonl").splitlines(keepends=True)
    for number, line in enumerate(lines):
        yield b"1\n" + line.encode()
        if number % 20 == 0:
            yield b"-max\n" + "".join(lines[number:number + 3]).encode()
    yield b"0.5\n{\"t\":1e15,\"a\":null,\"b\":true,\"c\":1.5,\"d\":18446744073709551615}\n\n{\n[]\n"


def import_():
    for name in ("gnettrack.txt", "events.txt", "mobileinsight.jsonl"):
        text = tables.text_of(f"tests/data/import_sample_{name}")
        lines = text.splitlines(keepends=True)
        yield text.encode()
        for line in lines[1:]:
            yield ((lines[0] if name.endswith("txt") else "") + line).encode()


def configuration():
    lines = tables.text_of("app/resources/zef_test_lte.deviceconfig").splitlines()
    for line in lines:
        yield f"[metrics]\n{line}\n".encode()
    yield from (literal.encode() for literal in tables.literals("tests/basebandd/deviceconfig_test.cc"))


def body(signature, *values):
    out = bytearray()
    write(out, signature, *values)
    return chunk(bytes(out))


# The rows of kMembers in service_fuzz.cc.
PERFORM, FEED, EVENTS_ON, EVENTS_OFF, STATUS, PAUSE, RESUME, STEP = 0, 3, 5, 6, 7, 8, 9, 10
SOURCE, LEAVE, CONNECTION = b"\x0e", b"\x1e", b"\x0f"


def service():
    def perform(command, **keys):
        return bytes([PERFORM]) + body("sa{sv}", command, {"kKeyAppID": ("x", 2), **keys})

    def call(member, signature="", *values):
        return bytes([member]) + body(signature, *values)

    configure = perform("kCommandAddConfiguration", kKeyPayloadType=("x", 0),
                        kKeyPayload=("ay", b"[metrics]\nK_LTE_RRC_STATE=1000\nK_LTE_TX_POWER=\"on change\"\n"))
    query = perform("kCommandQueryMetric", kKeyMetricID=("x", 0), kKeyTriggerID=("x", 0x7F4E04))
    feed = call(FEED, "a{sv}", {"kKeyMetricID": ("x", 0x3C4E04), "kKeyPayload": ("ay", b"\x08\x01\x10\x03")})
    on, off = call(EVENTS_ON), call(EVENTS_OFF)
    yield from (configure, query, feed, on, off, call(STATUS), call(PAUSE), call(RESUME), call(STEP, "u", 3),
                perform("kCommandClearConfiguration"), perform("kCommandNonsense"), LEAVE, SOURCE)
    yield configure + on + SOURCE * 9 + feed + query + CONNECTION + b"\2" + off
    yield on + configure + feed + feed + CONNECTION + b"\0" + feed + LEAVE
    yield on + CONNECTION + b"\1" + chunk(b"nonsense") + configure + feed
    yield call(PAUSE) + call(STEP, "u", 100) + configure + on + call(RESUME)
    for kind in ("s", "i", "b", "d", "g"):
        yield perform("kCommandQueryMetric", kKeyMetricID=(kind, {"s": "x", "g": "x"}.get(kind, 1)))


def event_stream():
    for number, (metric, payload) in enumerate(payloads(), start=1):
        if number % 10 == 1:
            yield b"\0" + body("tsa{sv}", number, "kEventMetric", {
                "kKeyMetricID": ("x", metric), "kKeyPayload": ("ay", payload), "kKeyProfileID": ("x", 0)})
    every = {"x": ("x", -1), "b": ("b", 1), "d": ("d", 0.5), "g": ("g", ""), "s": ("s", "ä"), "ay": ("ay", b"\0"),
             "as": ("as", ["a"]), "v": ("v", ("x", 1))}
    yield b"\0" + body("tsa{sv}", 1, "kEventTrigger", every) + b"\1" + body("tsa{sv}", 5, "", {})
    for keys in (64, 65):
        yield b"\0" + body("tsa{sv}", 1, "", {f"k{i}": ("b", 1) for i in range(keys)})
    yield b"\0" + body("tsa{sv}", (1 << 64) - 1, "", {}) + b"\1" + body("tsa{sv}", 5, "", {})


def modem():
    # Parts as in modem_fuzz.cc: modem, network, signal, area, cells, cells, SIM, bearers.
    cells = [
        {"cell-type": ("u", 5), "serving": ("b", 1), "operator-id": ("s", "26201"), "tac": ("s", "1234"),
         "ci": ("s", "1B2C3D4"), "physical-ci": ("s", "1A"), "earfcn": ("u", 6300), "rsrp": ("d", -97.0),
         "rsrq": ("d", -11.5)},
        {"cell-type": ("u", 5), "serving": ("b", 0), "physical-ci": ("s", "40"), "earfcn": ("u", 1300),
         "rsrp": ("d", -90.0), "rsrq": ("d", -10.0)},
        {"cell-type": ("u", 3), "serving": ("b", 0), "uarfcn": ("u", 10562), "psc": ("u", 7), "rscp": ("d", -85.0),
         "ecio": ("d", -8.0)},
        {"cell-type": ("u", 2), "serving": ("b", 0), "arfcn": ("u", 62), "rx-level": ("u", 30),
         "base-station-id": ("s", "2B")}]
    level = {"rsrp": ("d", -97.0), "rsrq": ("d", -11.0), "snr": ("d", 7.5), "rssi": ("d", -70.0)}
    for access, kind in ((1 << 14, 5), (1 << 5, 3), (1 << 1, 2)):
        modem_ = b"\0" + body("a{sv}", {"AccessTechnologies": ("u", access), "CurrentCapabilities": ("u", 12),
                                        "Bearers": ("ao", [])})
        network = b"\1" + body("a{sv}", {"RegistrationState": ("u", 1), "OperatorCode": ("s", "26201"),
                                         "EpsUeModeOperation": ("u", 2)})
        served = [{**cell, "serving": ("b", cell["cell-type"][1] == kind)} for cell in cells]
        signal = b"\2" + body("a{sv}", {name: ("a{sv}", level) for name in ("Lte", "Umts", "Gsm")})
        area = b"\3" + body("s", "262,01,3E9,1CEAD8F,7D1")
        yield modem_ + network + area + b"\4" + body("aa{sv}", served) + signal
    yield b"\6" + body("a{sv}", {"Imsi": ("s", "262011234567890"), "SimIdentifier": ("s", "8949020000012345678"),
                                 "Gid1": ("ay", b"\x12\x34"), "OperatorIdentifier": ("s", "26201")})
    yield b"\7" + body("aa{sv}", [{"Connected": ("b", 1), "Properties": ("a{sv}", {"apn": ("s", "internet"),
                                                                               "ip-type": ("u", 4)}),
                                   "Ip4Config": ("a{sv}", {"address": ("s", "10.0.0.1"), "dns1": ("s", "10.0.0.2")}),
                                   "Ip6Config": ("a{sv}", {"address": ("s", "fe80::1")})}])


def screen():
    yield b"\2" + b"\3" + bytes([1, 5]) * 3 + b"\3" + bytes([1, 6]) * 3
    yield b"\1\7\1\2\3\4\1\1\7\1\2\3\5\1\1\5\1\2"


SEEDS = {"messages": messages, "differential": messages, "merges": merges, "intake": intake, "pages": pages, "screen": screen,
         "recording": recording, "import": import_, "configuration": configuration, "service": service,
         "event_stream": event_stream, "modem": modem}


def write_seeds(target, folder):
    for seed in SEEDS[target]():
        (pathlib.Path(folder) / hashlib.sha1(seed).hexdigest()).write_bytes(seed)


if __name__ == "__main__":
    write_seeds(sys.argv[1], sys.argv[2])
