"""service_test.py BIN RECORDING: the real service on a real private bus, with the real application
and metricctl as its clients."""
import json
import os
import re
import signal
import subprocess
import sys
import time

from private_bus import PrivateBus, wait_for

BIN, RECORDING = sys.argv[1], sys.argv[2]
REPLAY = ["--source", "replay", "--recording", RECORDING]
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def status(bus):
    return json.loads(bus.run("metricctl", "status", "--json").stdout)


def resident_kilobytes(process):
    for line in open(f"/proc/{process.pid}/status"):
        if line.startswith("VmRSS"):
            return int(line.split()[1])


def pages_of(text):
    """The last printed block of each page, without its age."""
    pages = {}
    for block in text.split("\n\n"):
        lines = block.strip("\n").split("\n")
        pages[lines[0].split("   ")[0]] = lines[1:]
    return pages


def the_application_starts_up_in_order_and_shows_every_metric():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        monitor = bus.start(["dbus-monitor", "--address", bus.environment["BASEBAND_BUS_ADDRESS"],
                             "type='method_call',interface='org.brennic.BasebandManager1'"],
                            stdout=subprocess.PIPE)
        wait_for(lambda: False, seconds=0.3)
        shown = bus.run("quorin-terminal", "--seconds", "4", "--quiet")
        bus.run("metricctl", "status")  # its call pushes what the monitor still buffers
        monitor.terminate()
        calls = monitor.communicate()[0]
    order = re.findall(r'member=(\w+)|string "(kCommand\w+)"', calls)
    check(f"clear, push, listen, query: {order}",
          [b or a for a, b in order if b or a.startswith("Events")] ==
          ["EventsOn", "kCommandClearConfiguration", "kCommandAddConfiguration", "EventsOff",
           "EventsOn", "kCommandQueryMetric"])
    query = calls[calls.rindex("kCommandQueryMetric"):]
    entries = re.findall(r'string "(kKey\w+)"\s+variant\s+int64 (\d+)', query)
    check(f"the query's keys and values: {entries}", entries == [
        ("kKeyAppID", "2"), ("kKeyPayloadType", "0"), ("kKeyTriggerRef", "9999"),
        ("kKeyTriggerType", "0"), ("kKeyTriggerID", "8323091"), ("kKeyProfileID", "0"),
        ("kKeyMetricID", "0")])
    with open(RECORDING) as recording:
        loopback = subprocess.run([f"{BIN}/quorin-terminal", "--recording", RECORDING, "--speed", "max",
                                   "--quiet"], text=True, stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL, env=dict(os.environ, TZ="UTC"))
    expected, got = pages_of(loopback.stdout), pages_of(shown.stdout)
    check("43 pages are shown", len(expected) == 43)
    for key in expected:
        check(f"{key}: {got.get(key)} instead of {expected[key]}", got.get(key) == expected[key])


def the_application_ends_in_order_while_events_flow():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max", "--loop")
        ended = bus.run("quorin-terminal", "--seconds", "1", "--quiet", "--pages", "LTE NAS")
        check(f"it ends with 0: {ended.stderr[-2000:]}", ended.returncode == 0)


def a_refused_configuration_stops_the_start_up():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY)
        refused = bus.run("metricctl", "watch", "K_NONSENSE")
        check("metricctl names an unknown metric", refused.returncode == 2
              and refused.stderr == "metricctl: there is no metric K_NONSENSE\n")


def without_a_service_commands_fail_at_once():
    with PrivateBus(BIN) as bus:
        start = time.monotonic()
        alone = bus.run("quorin-terminal", "--seconds", "0.5", "--pages", "LTE NAS")
        check("no service: logged, and the pages come up",
              alone.returncode == 0 and "error=-534716414 msg=" in alone.stderr
              and "LTE NAS   never received" in alone.stdout)
        check("no service: at once", time.monotonic() - start < 4)
        check("no service: status says so", bus.run("metricctl", "status").returncode == 2)


def events_flow_again_after_the_service_was_killed():
    with PrivateBus(BIN) as bus:
        service = bus.service(*REPLAY, "--speed", "20", "--loop")
        watch = bus.start([f"{BIN}/metricctl", "watch", "--json"], stdout=subprocess.PIPE)
        os.set_blocking(watch.stdout.fileno(), True)
        events = [json.loads(watch.stdout.readline())]
        slowest = 0
        for _ in range(50):
            service.kill()
            service.wait()
            service = bus.start([f"{BIN}/basebandd", *REPLAY, "--speed", "20", "--loop"])
            start = time.monotonic()
            while True:
                events.append(json.loads(watch.stdout.readline()))
                if events[-1]["seq"] == 1:
                    break
            slowest = max(slowest, time.monotonic() - start)
        check(f"within a second, fifty times: {slowest:.2f} s", slowest < 1)
        for before, after in zip(events, events[1:]):
            check(f"{after} does not follow {before}",
                  after["seq"] == before["seq"] + 1 or after["seq"] == 1)


def a_slow_client_costs_the_others_nothing():
    with PrivateBus(BIN) as bus:
        service = bus.service(*REPLAY, "--speed", "max", "--loop")
        slow = bus.start([f"{BIN}/metricctl", "watch", "--json"], stdout=subprocess.DEVNULL)
        wait_for(lambda: len([s for s in status(bus)["sessions"] if s["sent"] > 0]) == 1)
        slow.send_signal(signal.SIGSTOP)
        held = wait_for(lambda: [s for s in status(bus)["sessions"] if s["dropped"] > 1000])
        check(f"what a stopped client misses is counted: {status(bus)['sessions']}", held)
        check("and bounded", held and all(s["waiting"] <= 31 for s in held))
        before = resident_kilobytes(service)
        watchers = [bus.start([f"{BIN}/metricctl", "watch", "--count", "50"], stdout=subprocess.DEVNULL)
                    for _ in range(64)]
        check("64 clients at once are served", all(w.wait(timeout=60) == 0 for w in watchers))
        grown = resident_kilobytes(service) - before
        check(f"the service's memory stays bounded: {grown} kB more", grown < 32 * 1024)
        check("clients that left are forgotten", wait_for(lambda: len(status(bus)["sessions"]) == 1))
        service.send_signal(signal.SIGTERM)
        check("SIGTERM ends it in order", service.wait(timeout=10) == 0)


def malformed_calls_change_nothing():
    with PrivateBus(BIN) as bus:
        service = bus.service(*REPLAY, "--speed", "max")
        for call in [["Perform"], ["Perform", "s", "x"], ["Perform", "sa{sv}", "x", "0"],
                     ["Perform", "sa{sv}", "kCommandAddConfiguration", "1", "kKeyAppID", "s", "x"],
                     ["Perform", "sa{sv}", "kCommandAddConfiguration", "1", "kKeyAppID", "as", "0"],
                     ["Feed", "a{sv}", "0"], ["Feed", "s", "x"], ["Step", "s", "x"],
                     ["Nonsense"], ["EventsOn", "s", "x"]] * 3:
            subprocess.run(["busctl", "--address", bus.environment["BASEBAND_BUS_ADDRESS"], "call",
                            "org.brennic.BasebandManager1", "/org/brennic/BasebandManager1",
                            "org.brennic.BasebandManager1", *call], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
        check("the service lives", service.poll() is None
              and bus.run("metricctl", "watch", "--count", "5").returncode == 0)


def a_recording_can_be_made_and_handed_back():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        made = f"{bus.folder.name}/made.jsonl"
        check("record ends with 0", bus.run("metricctl", "record", made, "--count", "30").returncode == 0)
        lines = [json.loads(line) for line in open(made)]
        check("30 metrics are recorded", len({line["kKeyMetricID"] for line in lines}) == 30)
        counts = {m["id"]: m["count"] for m in status(bus)["metrics"]}
        check("replay ends with 0",
              bus.run("metricctl", "replay", made, "--speed", "0").returncode == 0)
        check("and reaches the service",
              {m["id"]: m["count"] for m in status(bus)["metrics"]} ==
              {id: count + 1 for id, count in counts.items()})


def wrong_use_is_one_clear_line():
    with PrivateBus(BIN) as bus:
        for arguments, words in [
            (["--source", "replay"], "basebandd: a replay needs --recording FILE"),
            (["--source", "replay", "--recording", "/nonexistent"],
             "basebandd: /nonexistent: No such file or directory"),
            (["--source", "nonsense"], "basebandd: there is no source 'nonsense'"),
            (["--speed", "x"], "basebandd: 'x' is no speed"), (["--nonsense"], "basebandd: ")]:
            wrong = bus.run("basebandd", *arguments)
            check(f"{arguments}: {wrong}", wrong.returncode == 2 and wrong.stderr.startswith(words)
                  and wrong.stderr.count("\n") == 1)
        bus.service(*REPLAY)
        second = bus.run("basebandd", *REPLAY)
        check(f"a second service: {second}", second.returncode == 1
              and second.stderr == "basebandd: org.brennic.BasebandManager1: "
                                   "another service has this name\n")


for test in [the_application_starts_up_in_order_and_shows_every_metric,
             the_application_ends_in_order_while_events_flow,
             a_refused_configuration_stops_the_start_up, without_a_service_commands_fail_at_once,
             events_flow_again_after_the_service_was_killed, a_slow_client_costs_the_others_nothing,
             malformed_calls_change_nothing, a_recording_can_be_made_and_handed_back,
             wrong_use_is_one_clear_line]:
    started = time.monotonic()
    test()
    print(f"{test.__name__}: {time.monotonic() - started:.1f} s")
for failure in failures:
    print("FAILED:", failure)
sys.exit(1 if failures else 0)
