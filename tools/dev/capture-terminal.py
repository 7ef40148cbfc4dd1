#!/usr/bin/env python3
"""capture-terminal.py [BIN]: takes the screens of docs/terminal.md anew, from the real program beside the
service with the recording that ships with it. BIN: the programs' folder, build/release/bin without."""
import os
import pathlib
import re
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/end_to_end"))
from private_bus import PrivateBus, wait_for  # noqa: E402
from tmux import Tmux  # noqa: E402

BIN = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/release/bin")
PAGE = ROOT / "docs/terminal.md"
RECORDING = ROOT / "app/resources/drive.jsonl"
LTE = ["Down", "Enter"]

# name: columns, rows, environment before the program, keys, seconds on the page
SCREENS = {
    "page": (80, 16, "", [*LTE, *["Down"] * 3, "Enter", "Down"], 16),
    "wide": (110, 16, "", [*LTE, *["Down"] * 11, "Enter", *["Down"] * 7], 11),
    "small": (40, 10, "", [*LTE, "End", "Enter", *["Wait"] * 6, *["Down"] * 11], 1),
    "log": (80, 16, "", [*LTE, "l"], 4),
    "ascii": (110, 10, "LC_ALL=C ", [*LTE, "Down", "Enter"], 6),
    "help": (80, 24, "", ["?"], 1),
}


def captured(columns, rows, environment, keys, seconds):
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", str(RECORDING), "--speed", "5")
        with Tmux(columns, rows, bus.environment) as terminal:
            terminal.line(f"clear; exec env {environment}{BIN}/quorin-terminal")
            terminal.has("? keys")
            for key in keys:
                time.sleep(1) if key == "Wait" else terminal.keys(key)
                wait_for(lambda: False, 0.05)
            time.sleep(seconds)
            screen = terminal.screen()[:rows]
            terminal.keys("C-c")
    return "\n".join(screen)


text = PAGE.read_text()
for name, screen in SCREENS.items():
    block = re.compile(rf"(<!-- {name} -->\n```\n).*?(```\n)", re.S)
    if not block.search(text):
        sys.exit(f"capture-terminal: {PAGE} has no place for the screen \"{name}\"")
    shown = captured(*screen)
    text = block.sub(lambda match: match.group(1) + shown + "\n" + match.group(2), text)
PAGE.write_text(text)
