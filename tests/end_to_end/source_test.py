"""source_test.py BIN RECORDING: the service's sources through the real service: a simulated drive on
every page, and a replay that is paused and stepped."""
import json
import re
import subprocess
import sys
import time

from checks import check, run
from private_bus import PrivateBus, pages_of, wait_for

BIN, RECORDING = sys.argv[1], sys.argv[2]
# After so many metrics the drive of this seed has had all 30; these lists are empty just then.
SEED, METRICS = "1", 3000
EMPTY = {"UMTS GSM Neighbor Cell Meas", "GSM LTE Neighbor Cell Meas"}


def given(bus):
    """How many metrics the source has given."""
    return sum(metric["count"] for metric in bus.status()["metrics"])


def a_simulated_drive_reaches_every_page():
    with PrivateBus(BIN) as bus:
        bus.service("--source", "simulator", "--seed", SEED)
        check("pause ends with 0", bus.run("metricctl", "pause").returncode == 0)
        bus.run("metricctl", "step", str(METRICS - given(bus)))
        check(f"it takes {METRICS} steps: {given(bus)}", wait_for(lambda: given(bus) == METRICS, 60))
        shown = bus.run("quorin-terminal", "--seconds", "2").stdout
        made = f"{bus.folder.name}/made.jsonl"
        bus.run("metricctl", "record", made, "--count", "30")
        with open(made) as recording:
            expected = json.loads(subprocess.run(
                [f"{BIN}/metricctl", "intake", "--quiet", "--dump", "pages"], stdin=recording,
                text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout)
    arrived = set(re.findall(r"Metric ID in Hex = (\w+)", shown))
    check(f"all 30 metrics arrive: {sorted(arrived)}", len(arrived) == 30 and "3C0013" in arrived)
    pages = pages_of(shown[shown.rindex("Received Valid Metric"):])
    check("every page of the tree is shown", len(expected.keys() & pages.keys()) == 43)
    for key in expected.keys() & pages.keys():
        rows = [" ".join(" ".join(row).split()) for section in expected[key] for row in section["rows"]]
        lines = [" ".join(line.split()) for line in pages[key] if line.startswith("    ")]
        check(f"{key} shows {lines} instead of {rows}",
              (rows or ["No entries"]) == lines and (rows == []) == (key in EMPTY))


def a_replay_is_paused_and_stepped():
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "20")
        early = bus.run("metricctl", "step")
        check(f"a source that is not paused takes no steps: {early}", early.returncode == 2
              and early.stderr == "metricctl: the source is not paused\n")
        check("pause ends with 0", bus.run("metricctl", "pause").returncode == 0)
        check("status says so", bus.status()["paused"]
              and "(paused)" in bus.run("metricctl", "status").stdout.splitlines()[0])
        held = given(bus)
        time.sleep(0.3)
        check("nothing comes while it is paused", given(bus) == held)
        for arguments, count in [([], 1), (["5"], 5), (["0"], 0), (["200"], 200)]:
            bus.run("metricctl", "step", *arguments)
            held += count
            check(f"step {arguments} gives {count}", given(bus) == held)
        bus.run("metricctl", "step", "1000000")
        lines = sum(1 for _ in open(RECORDING))
        check("more steps than there are metrics end at the last one",
              wait_for(lambda: given(bus) == lines)
              and bus.status()["source"].endswith("at its end"))
        check("resume ends with 0", bus.run("metricctl", "resume").returncode == 0)
        check("status says so", not bus.status()["paused"])


def a_pause_stops_the_sources_time():
    with PrivateBus(BIN) as bus:
        recording = f"{bus.folder.name}/two.jsonl"
        event = '{{"kKeyMetricID":3952132,"kKeyPayload":"1003","kKeyProfileID":0,"t":{}}}\n'
        with open(recording, "w") as file:
            file.write(event.format(0) + event.format(1000))
        started = time.monotonic()
        bus.service("--source", "replay", "--recording", recording)
        bus.run("metricctl", "pause")
        left = 1.0 - (time.monotonic() - started)  # at least
        time.sleep(max(left, 0) + 0.1)
        resumed = time.monotonic()
        bus.run("metricctl", "resume")
        check("the next metric comes", wait_for(lambda: given(bus) == 2))
        waited = time.monotonic() - resumed
        check(f"as late after the pause as it was before: {waited:.2f} s of {left:.2f} s",
              waited >= left - 0.01)


run(a_simulated_drive_reaches_every_page, a_replay_is_paused_and_stepped,
    a_pause_stops_the_sources_time)
