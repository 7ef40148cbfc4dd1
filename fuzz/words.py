#!/usr/bin/env python3
"""words.py TARGET: prints libFuzzer's dictionary for a target, made from the product's tables."""
import struct
import sys

import tables


def field_keys():
    numbers = sorted({number for _, fields in tables.classes().values() for number in fields})
    yield from (tables.key(number, wire) for number in numbers for wire in (0, 2))
    yield from (tables.key(tag, wire) for tag in tables.tags() for wire in (0, 2))
    # Cut to 16 bits, over-long, negative, groups.
    yield from (tables.key(0x10000 + number, 0) for number in (0, 1, 2, 19))
    yield from (b"\x88\x80\x80\x80\x80\x00", b"\x80" * 9 + b"\x01", b"\xff" * 10, b"\xff" * 9 + b"\x01",
                b"\xff\xff\xff\xff\x0f", b"\x7b", b"\x7c", b"\x0c")


def metric_ids():
    yield from (struct.pack("<q", number) for number in tables.metric_ids().values())


def constants():
    yield from tables.metric_ids()


def keys_of_events():
    found = tables.literals("platform/baseband/osmin.h")
    yield from (literal for literal in found if literal.startswith("k"))


def numbers():
    yield from ("-1", "1e15", "1e308", "18446744073709551615", "9223372036854775808", "null", "true", "0x")


def recording_words():
    yield from ('{"kKeyMetricID":', ',"kKeyPayload":"', ',"kKeyProfileID":0', ',"t":', "}\n", "max\n", "-1\n")
    yield from (str(number) for number in tables.metric_ids().values())


def toml():
    yield from ("[metrics]\n", " = ", '"on change"', "\n", "#", "'''", '"""', "{", "}", "[[", "]]", "1979-05-27",
                "0b1", "0o7", "inf", "nan", "\\u0000", "\\n", "true", "100", "3600000")


def log_words():
    """Columns, keys and kinds of the importers' rules."""
    for path in ("import_gnettrack.cc", "import_gnettrack_rules.cc", "import_mobileinsight.cc"):
        yield from tables.literals(f"tools/metricctl/{path}")
    yield from ("\t", "4G", "3G", "2G", "2026.01.05_09.30.00", "2026-01-05 09:30:00.5", '{"type_id":"', '":', "10 MHz",
                "PCell", "1_SCell", '{"Ignored":', '[{"', "masked", "00101", "0x28ff")


def readings():
    for path in ("reading_rows.cc", "reports.cc", "ModemManagerSource.cc"):
        yield from (literal for literal in tables.literals(f"basebandd/modem/{path}") if " " not in literal)


def commands():
    yield from tables.literals("platform/bus/protocol.h")
    yield from ("kCommandAddConfiguration", "kCommandClearConfiguration", "kCommandQueryMetric")


def signatures():
    yield from (b"\1x\0", b"\1s\0", b"\2ay\0", b"\1u\0", b"\1d\0", b"\1b\0", b"\5a{sv}\0", b"\1v\0", b"\1g\0")


WORDS = {
    "messages": [field_keys], "differential": [field_keys], "merges": [field_keys], "intake": [field_keys, metric_ids],
    "pages": [field_keys], "screen": [],
    "recording": [recording_words, keys_of_events, numbers], "import": [log_words, numbers],
    "configuration": [constants, toml], "service": [commands, keys_of_events, constants, metric_ids, signatures],
    "event_stream": [keys_of_events, metric_ids, signatures], "modem": [readings, signatures]}


def printed(word):
    data = word if isinstance(word, bytes) else word.encode("utf-8", "surrogateescape")
    return '"' + "".join(chr(b) if 32 <= b < 127 and b not in b'"\\' else f"\\x{b:02x}" for b in data) + '"'


def words(target):
    found = {printed(word) for source in WORDS[target] for word in source() if 0 < len(word) <= 64}
    return "".join(f"{word}\n" for word in sorted(found))


if __name__ == "__main__":
    print(words(sys.argv[1]), end="")
