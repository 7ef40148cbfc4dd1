#!/usr/bin/env python3
"""plot-drive.py RECORDING [--from SECOND] [--to SECOND] > drive.svg

Draws a recording of a drive: the technology in use, the level of the serving cell and of the LTE
neighbours, whether there is a connection, and how many LTE carriers are in use."""
import argparse
import json
import sys

LTE_CELL, LTE_QUALITY, LTE_NEIGHBOURS = 0x3C40C2, 0x3C4F6A, 0x3CD30F
LTE_RRC, LTE_CARRIERS = 0x3C4E04, 0x3CD313
UMTS_RRC, UMTS_CELL, UMTS_LEVEL = 0x3CD112, 0x3C300C, 0x3CD102
GSM_CELL, GSM_IDLE_LEVEL, GSM_CALL_LEVEL = 0x3C2E0C, 0x3CD002, 0x3CD003
LTE_NULL, LTE_CONNECTED, UMTS_INACTIVE = 0, 3, 1
UMTS_CONNECTED = range(4, 8)
GSM_DEDICATED = 1

COLOURS = {"LTE": "#1f6fb4", "UMTS": "#c2691e", "GSM": "#3a8a3a"}
NEIGHBOUR_COLOURS = ["#9aa7b5", "#b7a58e", "#8fb0a0", "#b49ab8", "#a9b27f", "#c09a9a"]
WIDTH, LEFT, RIGHT = 1200, 85, 20
TOP_DBM, BOTTOM_DBM = -40, -130
BAND_Y, BAND_H, LEVEL_Y, LEVEL_H, RRC_Y, RRC_H, CARRIER_Y, CARRIER_H = (
    40, 16, 70, 330, 415, 10, 440, 60)
LONGEST_GAP_S = 2.5


def varint(data, at):
    value = shift = 0
    while True:
        byte = data[at]
        value |= (byte & 0x7F) << shift
        at, shift = at + 1, shift + 7
        if byte < 0x80:
            return value, at


def fields(data):
    """The message's fields in order: number, and a number or bytes."""
    at = 0
    while at < len(data):
        key, at = varint(data, at)
        if key & 7 == 0:
            value, at = varint(data, at)
        else:
            length, at = varint(data, at)
            value, at = data[at:at + length], at + length
        yield key >> 3, value


def signed(value):
    return (value >> 1) ^ -(value & 1)


def nested(data, number):
    return [dict(fields(value)) for n, value in fields(data) if n == number]


class Drive:
    def __init__(self):
        self.technology = []  # (second, name or None)
        self.serving = []  # (second, technology, level)
        self.cell_changes = []
        self.neighbours = {}  # (EARFCN, PCI) -> [(second, RSRP)]
        self.connected = []  # (second, bool)
        self.carriers = []  # (second, active, configured)
        self.last = 0

    def take(self, second, metric, data):
        self.last = max(self.last, second)
        message = dict(fields(data))
        if metric == LTE_CELL:
            self.enter(second, "LTE")
            self.cell_changes.append(second)
        elif metric == UMTS_CELL:
            self.enter(second, "UMTS")
            self.cell_changes.append(second)
        elif metric == GSM_CELL:
            self.enter(second, "GSM")
            self.connected.append((second, message.get(11) == GSM_DEDICATED))
        elif metric == LTE_RRC:
            if message.get(2, 0) == LTE_NULL:
                self.enter(second, None)
            self.connected.append((second, message.get(2) == LTE_CONNECTED))
        elif metric == UMTS_RRC:
            if message.get(2) == UMTS_INACTIVE:
                self.enter(second, None)
            self.connected.append((second, message.get(2) in UMTS_CONNECTED))
        elif metric == LTE_QUALITY:
            for sample in nested(data, 15)[-1:]:
                self.serving.append((second, "LTE", signed(sample[4])))
        elif metric == UMTS_LEVEL:
            for antenna in nested(data, 3)[:1]:
                self.serving.append((second, "UMTS", signed(antenna[1])))
        elif metric == GSM_IDLE_LEVEL:
            self.serving.append((second, "GSM", signed(message[5])))
        elif metric == GSM_CALL_LEVEL:
            self.serving.append((second, "GSM", message[6] - 110))
        elif metric == LTE_NEIGHBOURS:
            for row in nested(data, 2):
                key = (row[1], row[2])
                self.neighbours.setdefault(key, []).append((second, signed(row[4])))
        elif metric == LTE_CARRIERS:
            states = [row.get(2, 0) for row in nested(data, 2)]
            self.carriers.append((second, states.count(2), sum(s > 0 for s in states)))

    def enter(self, second, name):
        if not self.technology or self.technology[-1][1] != name:
            self.technology.append((second, name))


def read(path):
    drive, start = Drive(), None
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            if not line.strip():
                continue
            event = json.loads(line)
            start = event["t"] if start is None else start
            drive.take((event["t"] - start) / 1000, event["kKeyMetricID"],
                       bytes.fromhex(event.get("kKeyPayload", "")))
    return drive


class Picture:
    def __init__(self, first, last):
        self.first, self.last = first, last
        self.parts = []

    def x(self, second):
        second = min(max(second, self.first), self.last)
        span = WIDTH - LEFT - RIGHT
        return round(LEFT + span * (second - self.first) / (self.last - self.first), 1)

    def y(self, level):
        level = min(max(level, BOTTOM_DBM), TOP_DBM)
        return round(LEVEL_Y + LEVEL_H * (TOP_DBM - level) / (TOP_DBM - BOTTOM_DBM), 1)

    def box(self, first, last, y, height, colour):
        if last > self.first and first < self.last:
            width = round(self.x(last) - self.x(first), 1)
            self.parts.append(f'<rect x="{self.x(first)}" y="{y}" width="{width}" '
                              f'height="{height}" fill="{colour}"/>')

    def line(self, points, colour, width):
        """Points of (second, level); a gap in time is a gap in the line."""
        run = []
        for second, level in points + [(float("inf"), 0)]:
            if run and second - run[-1][0] > LONGEST_GAP_S:
                if len(run) > 1:
                    text = " ".join(f"{self.x(s)},{self.y(v)}" for s, v in run)
                    self.parts.append(f'<polyline points="{text}" fill="none" stroke="{colour}" '
                                      f'stroke-width="{width}"/>')
                run = []
            if self.first <= second <= self.last:
                run.append((second, level))

    def text(self, x, y, words, anchor="start", colour="#333"):
        self.parts.append(f'<text x="{x}" y="{y}" text-anchor="{anchor}" fill="{colour}">'
                          f"{words}</text>")

    def rule(self, x1, y1, x2, y2, colour="#e4e4e4"):
        self.parts.append(f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{colour}"/>')


def spans(changes, last):
    """(second, value…) changes as (from, to, value…); what stays the same is one span."""
    changes = [c for i, c in enumerate(changes) if i == 0 or c[1:] != changes[i - 1][1:]]
    for i, change in enumerate(changes):
        yield (change[0], changes[i + 1][0] if i + 1 < len(changes) else last) + change[1:]


def draw(drive, first, last):
    picture = Picture(first, last)
    for level in range(BOTTOM_DBM, TOP_DBM + 1, 10):
        picture.rule(LEFT, picture.y(level), WIDTH - RIGHT, picture.y(level))
        picture.text(LEFT - 8, picture.y(level) + 4, level, "end")
    step = next(s for s in (10, 30, 60, 120, 300, 600) if (last - first) / s <= 15)
    for second in range(-(-int(first) // step) * step, int(last) + 1, step):
        picture.rule(picture.x(second), LEVEL_Y, picture.x(second), CARRIER_Y + CARRIER_H)
        picture.text(picture.x(second), CARRIER_Y + CARRIER_H + 18, f"{second // 60}:{second % 60:02}",
                     "middle")
    for begin, end, name in spans(drive.technology, last):
        if name:
            picture.box(begin, end, BAND_Y, BAND_H, COLOURS[name])
    for i, key in enumerate(sorted(drive.neighbours)):
        picture.line(drive.neighbours[key], NEIGHBOUR_COLOURS[i % len(NEIGHBOUR_COLOURS)], 0.9)
    for name, colour in COLOURS.items():
        picture.line([(s, v) for s, t, v in drive.serving if t == name], colour, 1.8)
    for second in drive.cell_changes:
        if first <= second <= last:
            picture.rule(picture.x(second), LEVEL_Y, picture.x(second), LEVEL_Y + 6, "#444")
    for begin, end, connected in spans(drive.connected, last):
        if connected:
            picture.box(begin, end, RRC_Y, RRC_H, "#666")
    unit = CARRIER_H / 3
    on_lte = [(b, e) for b, e, name in spans(drive.technology, last) if name == "LTE"]
    for begin, end in on_lte:
        picture.box(begin, end, CARRIER_Y + 2 * unit, unit, COLOURS["LTE"])
    for begin, end, active, configured in spans(drive.carriers, last):
        for i in range(configured):
            colour = COLOURS["LTE"] if i < active else "#c5d9ea"
            picture.box(begin, end, CARRIER_Y + (1 - i) * unit, unit - 1, colour)
    picture.text(LEFT - 8, BAND_Y + 12, "technology", "end")
    picture.text(LEFT - 8, RRC_Y + 9, "connected", "end")
    picture.text(LEFT - 8, CARRIER_Y + 34, "carriers", "end")
    picture.text(LEFT + 4, LEVEL_Y + 22, "dBm")
    x = LEFT
    for name, colour in COLOURS.items():
        kind = {"LTE": "RSRP", "UMTS": "RSSI", "GSM": "RXLEV"}[name]
        picture.text(x, 24, f"{name} serving cell ({kind})", colour=colour)
        x += 190
    picture.text(x, 24, "LTE neighbours (RSRP)", colour="#8a8f94")
    picture.text(x + 180, 24, "ticks: cell changes; pale: configured, not active")
    height = CARRIER_Y + CARRIER_H + 34
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
            f'font-family="sans-serif" font-size="12">\n<rect width="{WIDTH}" height="{height}" '
            'fill="white"/>\n' + "\n".join(picture.parts) + "\n</svg>")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("recording")
    parser.add_argument("--from", dest="first", type=float, default=0)
    parser.add_argument("--to", dest="last", type=float)
    options = parser.parse_args()
    drive = read(options.recording)
    last = min(options.last or drive.last, drive.last)
    if last <= options.first:
        sys.exit("plot-drive.py: nothing between --from and --to")
    print(draw(drive, options.first, last))


main()
