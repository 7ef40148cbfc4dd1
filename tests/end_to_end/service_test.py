"""service_test.py BIN RECORDING: the real service on a real private bus, with the real application
and metricctl as its clients."""
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import time

from checks import check, run
from private_bus import PrivateBus, pages_of, resident_kilobytes, wait_for

BIN, RECORDING = sys.argv[1], sys.argv[2]
REPLAY = ["--source", "replay", "--recording", RECORDING]


def commands_and_events(calls):
    order = re.findall(r'member=(\w+)|string "(kCommand\w+)"', calls)
    return [b or a for a, b in order if b or a.startswith("Events")]


def the_application_starts_up_in_order_and_shows_every_metric():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        shown = []
        calls = bus.calls_during(
            lambda: shown.append(bus.run("quorin-terminal", "--seconds", "4", "--quiet")))
    order = commands_and_events(calls)
    check(f"clear, push, listen, query: {order}", order == [
        "EventsOn", "kCommandClearConfiguration", "kCommandAddConfiguration", "EventsOff", "EventsOn",
        "kCommandQueryMetric"])
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
    expected, got = pages_of(loopback.stdout), pages_of(shown[0].stdout)
    check("43 pages are shown", len(expected) == 43)
    for key in expected:
        check(f"{key}: {got.get(key)} instead of {expected[key]}", got.get(key) == expected[key])


def the_application_ends_in_order_while_events_flow():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max", "--loop")
        ended = bus.run("quorin-terminal", "--seconds", "1", "--quiet", "--pages", "LTE NAS")
        check(f"it ends with 0: {ended.stderr[-2000:]}", ended.returncode == 0)


def the_application_with(configuration, folder):
    """The application with another configuration in its bundle."""
    for part in ("bin", "share/quorin"):
        pathlib.Path(folder, part).mkdir(parents=True, exist_ok=True)
    program = pathlib.Path(folder, "bin/quorin-terminal")
    if not program.exists():
        shutil.copy(f"{BIN}/quorin-terminal", program)
    pathlib.Path(folder, "share/quorin/zef_test_lte.deviceconfig").write_text(configuration)
    return str(program)


def a_refused_configuration_stops_the_start_up():
    good = 'K_LTE_RRC_STATE = "on change"\n'
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        for configuration, reason in [
                (f"[metrics]\n{good}K_NONSENSE = 1000\n", "3 msg=line 3: K_NONSENSE is no metric"),
                (f"[metrics]\n{good}\nK_LTE_NAS = = 5\n", "3 msg=line 4: "),
                ("[metrics]\n" + good + "#" * 65536, "3 msg=line 1: more than 65536 bytes")]:
            program, ended = the_application_with(configuration, bus.folder.name), []
            order = commands_and_events(bus.calls_during(lambda: ended.append(subprocess.run(
                [program, "--seconds", "0.5", "--pages", "LTE RRC State"], env=bus.environment,
                text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE))))
            out, err = ended[0].stdout, ended[0].stderr
            check(f"it is logged with its status, line and reason: {err}", re.search(
                r"addVantorConfigForAppId:andProtofFilePath:\]: error=" + re.escape(reason), err))
            check(f"no listening and no query after it: {order}", order == [
                "EventsOn", "kCommandClearConfiguration", "kCommandAddConfiguration"])
            check(f"and the pages come up without values: {out}",
                  ended[0].returncode == 0 and "pushing metric file\n" in out
                  and "Querying SIM files" not in out and "LTE RRC State   never received" in out)
        refused = bus.run("metricctl", "watch", "K_NONSENSE")
        check("metricctl names an unknown metric", refused.returncode == 2
              and refused.stderr == "metricctl: there is no metric K_NONSENSE\n")


def the_sim_files_come_because_they_are_asked_for():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        program = the_application_with('[metrics]\nK_LTE_RRC_STATE = "on change"\n', bus.folder.name)
        shown = subprocess.run([program, "--seconds", "1", "--pages", "Device Info SIM Files"],
                               env=bus.environment, text=True, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL).stdout
        check(f"and not because they are configured: {shown}",
              "Metric ID in Hex = 3C0013\n" in shown and "SIM Content 0\n" in shown)


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
        wait_for(lambda: len([s for s in bus.status()["sessions"] if s["sent"] > 0]) == 1)
        slow.send_signal(signal.SIGSTOP)
        held = wait_for(lambda: [s for s in bus.status()["sessions"] if s["dropped"] > 1000])
        check(f"what a stopped client misses is counted: {bus.status()['sessions']}", held)
        check("and bounded", held and all(s["waiting"] <= 31 for s in held))
        before = resident_kilobytes(service)
        watchers = [bus.start([f"{BIN}/metricctl", "watch", "--count", "50"], stdout=subprocess.DEVNULL)
                    for _ in range(64)]
        check("64 clients at once are served", all(w.wait(timeout=60) == 0 for w in watchers))
        grown = resident_kilobytes(service) - before
        check(f"the service's memory stays bounded: {grown} kB more", grown < 32 * 1024)
        check("clients that left are forgotten", wait_for(lambda: len(bus.status()["sessions"]) == 1))
        service.send_signal(signal.SIGTERM)
        check("SIGTERM ends it in order", service.wait(timeout=10) == 0)


def a_recording_can_be_made_and_handed_back():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max")
        made = f"{bus.folder.name}/made.jsonl"
        check("record ends with 0", bus.run("metricctl", "record", made, "--count", "30").returncode == 0)
        lines = [json.loads(line) for line in open(made)]
        check("30 metrics are recorded", len({line["kKeyMetricID"] for line in lines}) == 30)
        counts = {m["id"]: m["count"] for m in bus.status()["metrics"]}
        check("replay ends with 0",
              bus.run("metricctl", "replay", made, "--speed", "0").returncode == 0)
        check("and reaches the service",
              {m["id"]: m["count"] for m in bus.status()["metrics"]} ==
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


run(the_application_starts_up_in_order_and_shows_every_metric,
    the_application_ends_in_order_while_events_flow, a_refused_configuration_stops_the_start_up,
    the_sim_files_come_because_they_are_asked_for, without_a_service_commands_fail_at_once,
    events_flow_again_after_the_service_was_killed, a_slow_client_costs_the_others_nothing,
    a_recording_can_be_made_and_handed_back, wrong_use_is_one_clear_line)
