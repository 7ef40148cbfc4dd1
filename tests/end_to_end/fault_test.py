"""fault_test.py BIN RECORDING: full disks and outputs, programs killed at any moment, a bus that is
full or goes away, a home that cannot be written, another locale, clock and zone."""
import json
import os
import pathlib
import random
import resource
import signal
import struct
import subprocess
import sys
import time

import private_mounts

MAY_MOUNT = private_mounts.enter()

from checks import check, run
from private_bus import PrivateBus, listens_at, pages_of, wait_for
from raw_bus import RawBus

BIN, RECORDING = (os.path.abspath(argument) for argument in sys.argv[1:3])
REPLAY = ["--source", "replay", "--recording", RECORDING]
PRELOAD = os.path.join(os.path.dirname(BIN), "tests", "libquorin_preload.so")
KNOWN = {(event["kKeyMetricID"], event["kKeyPayload"]) for event in map(json.loads, open(RECORDING))}


def whole_lines(what, text):
    """Checks that a recording's whole lines are events as they were given; gives them."""
    lines = text[:text.rfind(b"\n") + 1].splitlines()
    events = [json.loads(line) for line in lines]
    check(f"{what}: every line is an event of the source",
          all((event["kKeyMetricID"], event["kKeyPayload"]) in KNOWN for event in events))
    check(f"{what}: their times go up", all(before["t"] <= after["t"]
                                            for before, after in zip(events, events[1:])))
    return events


def a_disk_that_fills_keeps_what_was_recorded():
    def limited(size):
        return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))

    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max", "--loop")
        ways = [(f"{bus.folder.name}/limited{size}", limited(size), "File too large")
                for size in (1, 150, 4096, 9999, 20000)]
        if MAY_MOUNT:
            small = pathlib.Path(bus.folder.name, "small")
            small.mkdir()
            subprocess.run(["mount", "-t", "tmpfs", "-o", "size=16k", "small", small], check=True)
            ways.append((f"{small}/recording", None, "No space left on device"))
        for options in ([], ["--redact"]):
            for path, limit, reason in ways:
                recorded = subprocess.run(
                    [f"{BIN}/metricctl", "record", *options, path], env=bus.environment, text=True,
                    preexec_fn=limit, timeout=60, stderr=subprocess.PIPE)
                check(f"{path}: it ends with a line: {recorded}", recorded.returncode == 2
                      and recorded.stderr == f"metricctl: {path}: {reason}\n")
                content = open(path, "rb").read()
                check(f"{path}: no part of a line is left", content == b"" or content[-1:] == b"\n")
                check(f"{path}: it was used: {len(content)}", len(content) > 3500 or "mited1" in path)
                whole_lines(path, content) if not options else None
                read = subprocess.run([f"{BIN}/metricctl", "redact"], input=content,
                                      stdout=subprocess.PIPE, env=bus.environment)
                check(f"{path}: it reads", read.returncode == 0)
        full = bus.run("metricctl", "record", "/dev/full")
        check(f"nothing fits: {full}", full.returncode == 2
              and full.stderr == "metricctl: /dev/full: No space left on device\n")
        if MAY_MOUNT:
            subprocess.run(["umount", small], check=True)


def an_output_that_is_full_is_told():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max", "--loop")
        for arguments in (["redact"], ["decode", "--class", "KCellularLteRrcState"], ["schema"],
                          ["intake"], ["watch"], ["status"]):
            given = "1003\n" if arguments[0] == "decode" else open(RECORDING).read()
            ended = subprocess.run([f"{BIN}/metricctl", *arguments], env=bus.environment, text=True,
                                   input=given, stdout=open("/dev/full", "w"),
                                   stderr=subprocess.PIPE, timeout=60)
            check(f"{arguments} says so: {ended}", ended.returncode == 2 and
                  ended.stderr.endswith("metricctl: standard output cannot be written any further\n"))


def recorders_killed_at_any_moment_leave_what_they_recorded():
    moments, most = random.Random(5), 0
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY, "--speed", "max", "--loop")
        for i in range(30):
            path = f"{bus.folder.name}/killed{i}"
            recorder = bus.start([f"{BIN}/metricctl", "record", path], stderr=subprocess.DEVNULL)
            wait_for(lambda: os.path.exists(path) and os.path.getsize(path) > 0)
            time.sleep(moments.random() * 0.1)
            recorder.kill()
            recorder.wait()
            content = open(path, "rb").read()
            most = max(most, len(whole_lines(f"killed recorder {i}", content)))
            os.remove(path)
        check(f"they had recorded: {most}", most > 100)
        check("killed clients are forgotten", wait_for(lambda: not bus.status()["sessions"]))


def a_service_killed_at_any_moment_costs_no_line():
    moments = random.Random(6)
    with PrivateBus(BIN) as bus:
        command = [f"{BIN}/basebandd", *REPLAY, "--speed", "max", "--loop"]
        service = bus.service(*command[1:])
        path = f"{bus.folder.name}/recorded"
        recorder = bus.start([f"{BIN}/metricctl", "record", path], stderr=subprocess.PIPE)
        for i in range(20):
            size = os.path.getsize(path) if i else 0
            check(f"events come before death {i}",
                  wait_for(lambda: os.path.exists(path) and os.path.getsize(path) > size))
            time.sleep(moments.random() * 0.1)
            service.kill()
            service.wait()
            service = bus.start(command)
        size = os.path.getsize(path)
        check("events come after the last", wait_for(lambda: os.path.getsize(path) > size))
        recorder.send_signal(signal.SIGINT)
        said = recorder.communicate(timeout=20)[1]
        check(f"the recorder ends in order: {said}", recorder.returncode == 0 and said == "")
        content = open(path, "rb").read()
        check("with a whole line", content.endswith(b"\n"))
        check("what is recorded is whole", len(whole_lines("killed service", content)) > 100)


def a_replay_into_a_service_that_dies_is_told():
    moments = random.Random(7)
    with PrivateBus(BIN) as bus:
        for i in range(10):
            service = bus.service("--source", "replay", "--recording", "/dev/null")
            replay = bus.start([f"{BIN}/metricctl", "replay", RECORDING, "--speed", "5"],
                               stderr=subprocess.PIPE)
            time.sleep(moments.random() * 0.3)
            service.kill()
            service.wait()
            said = replay.communicate(timeout=20)[1]
            check(f"death {i}: a line and 2: {replay.returncode} {said}", replay.returncode == 2
                  and said.startswith("metricctl: ") and said.count("\n") == 1)
        bus.service("--source", "replay", "--recording", "/dev/null")
        whole = bus.run("metricctl", "replay", RECORDING, "--speed", "0")
        check(f"the next one takes all: {whole}", whole.returncode == 0 and
              sum(metric["count"] for metric in bus.status()["metrics"]) == 321)


def a_bus_that_goes_ends_who_needs_it():
    with PrivateBus(BIN) as bus:
        service = bus.start([f"{BIN}/basebandd", *REPLAY, "--speed", "5", "--loop"],
                            stderr=subprocess.PIPE)
        wait_for(lambda: bus.run("metricctl", "status").returncode == 0)
        path = f"{bus.folder.name}/recorded"
        recorder = bus.start([f"{BIN}/metricctl", "record", path], stderr=subprocess.PIPE)
        viewer = bus.start([f"{BIN}/quorin-terminal", "--seconds", "6.5", "--quiet", "--pages",
                            "LTE RRC State"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        def served():
            return [session for session in bus.status()["sessions"] if session["sent"] > 10]

        def long_viewer():
            return bus.start([f"{BIN}/quorin-terminal", "--quiet", "--seconds", "100", "--pages",
                              "LTE RRC State"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        long_viewer()
        wait_for(lambda: len(served()) == 3)
        daemon = bus.processes[0]
        daemon.kill()
        daemon.wait()
        for who, process, code in (("basebandd", service, 1), ("metricctl", recorder, 2)):
            said = process.communicate(timeout=10)[1]
            check(f"{who} ends, to be started again: {process.returncode} {said}",
                  process.returncode == code and said == f"{who}: the bus is gone\n")
        check("what is recorded is whole", whole_lines("no bus", open(path, "rb").read()))
        shown = viewer.communicate(timeout=20)[0]
        check(f"a viewer stays, with what it has: {shown[-300:]}",
              viewer.returncode == 0 and "KLTE_RRC_STATE" in shown)
        alone = bus.run("metricctl", "status")
        check(f"who comes now is told: {alone}", alone.returncode == 2
              and alone.stderr.startswith(f"metricctl: {bus.address}: "))
        long_viewer()
        os.remove(f"{bus.folder.name}/bus")
        bus.start(["dbus-daemon", f"--config-file={bus.folder.name}/bus.conf", "--nofork"])
        wait_for(lambda: listens_at(f"{bus.folder.name}/bus"))
        bus.service(*REPLAY, "--speed", "5", "--loop")
        check("and served when all is back",
              bus.run("metricctl", "watch", "--count", "20").returncode == 0)
        check(f"as are a viewer that stayed and one that came before the bus: {bus.status()}",
              wait_for(lambda: len(served()) == 2))


def a_viewer_that_comes_before_the_service_is_served():
    with PrivateBus(BIN) as bus:
        viewer = bus.start([f"{BIN}/quorin-terminal", "--seconds", "100", "--pages",
                            "LTE RRC State"], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        while "listening for events" not in viewer.stderr.readline():
            pass
        bus.service(*REPLAY, "--speed", "5", "--loop")
        check(f"it gets what it asked for: {bus.status()}", wait_for(
            lambda: any(session["sent"] > 10 for session in bus.status()["sessions"])))


def a_bus_that_is_full_says_so_and_keeps_its_clients():
    with PrivateBus(BIN, '<limit name="max_connections_per_user">12</limit>') as bus:
        bus.service(*REPLAY, "--speed", "50", "--loop")
        path = f"{bus.folder.name}/recorded"
        bus.start([f"{BIN}/metricctl", "record", path])
        wait_for(lambda: os.path.exists(path) and os.path.getsize(path) > 500)
        others = [RawBus(bus.address) for _ in range(12)]
        for program, arguments in (("metricctl", ["status"]), ("basebandd", REPLAY)):
            refused = bus.run(program, *arguments)
            check(f"{program} says so in a line: {refused}", refused.returncode in (1, 2)
                  and refused.stderr.startswith(f"{program}: ") and refused.stderr.count("\n") == 1)
        size = os.path.getsize(path)
        check("who was there goes on", wait_for(lambda: os.path.getsize(path) > size))
        for other in others:
            other.socket.close()
        check("until there is room", wait_for(lambda: bus.run("metricctl", "status").returncode == 0))


def a_home_that_cannot_be_written_changes_nothing():
    if not MAY_MOUNT:
        return print("  left out: it takes root and mounts of one's own")
    private_mounts.lay_folder("/mnt")
    subprocess.run(["mount", "-o", "remount,ro", "/mnt"], check=True)
    with PrivateBus(BIN) as bus:
        shown = []
        for home in (bus.folder.name, "/mnt", "/nonexistent", ""):
            bus.environment |= {"HOME": home, "TMPDIR": home, "XDG_CACHE_HOME": home,
                                "XDG_CONFIG_HOME": home, "XDG_RUNTIME_DIR": home}
            service = bus.service(*REPLAY, "--speed", "max")
            ended = bus.run("quorin-terminal", "--recording", RECORDING, "--speed", "max", "--quiet")
            check(f"with the home '{home}': {ended.returncode}", ended.returncode == 0)
            check("events come", bus.run("metricctl", "watch", "--count", "5").returncode == 0)
            shown.append(pages_of(ended.stdout))
            service.terminate()
            service.wait()
        check("the same pages come", len(shown[0]) == 43 and all(s == shown[0] for s in shown))
    subprocess.run(["umount", "/mnt"], check=True)


def another_locale_changes_no_number():
    with PrivateBus(BIN) as bus:
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", f"{bus.folder.name}/de_DE.UTF-8"],
                       check=True, stderr=subprocess.DEVNULL)
        outputs = []
        for locale in ("C", "de_DE.UTF-8"):
            bus.environment |= {"LC_ALL": locale, "LOCPATH": bus.folder.name}
            dates = subprocess.run(["python3", "-c", "import locale; locale.setlocale(locale.LC_ALL,"
                                    " ''); print(locale.localeconv()['decimal_point'])"], text=True,
                                   env=bus.environment, stdout=subprocess.PIPE)
            check(f"the locale is there: {dates.stdout}",
                  dates.stdout.strip() == ("." if locale == "C" else ","))
            service = bus.service(*REPLAY, "--speed", "2.5")
            status = bus.status()["source"]
            service.terminate()
            service.wait()
            dump = subprocess.run([f"{BIN}/metricctl", "intake", "--dump", "pages"], text=True,
                                  input=open(RECORDING).read(), env=bus.environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            fraction = subprocess.run(
                [f"{BIN}/metricctl", "redact"], env=bus.environment, text=True,
                input='{"kKeyMetricID":3952132,"t":1500.75}\n', stdout=subprocess.PIPE)
            viewed = bus.run("quorin-terminal", "--recording", RECORDING, "--speed", "4000.5",
                             "--seconds", "20.5", "--quiet")
            check(f"{locale}: fractions are taken: {fraction} {viewed.stderr}",
                  fraction.stdout.endswith(',"t":1500}\n') and viewed.returncode == 0)
            outputs.append((status, dump.stdout, pages_of(viewed.stdout)))
        check(f"{outputs[0][0]} {outputs[1][0]}", outputs[0][0] == outputs[1][0])
        check("what is printed is the same", outputs[0][1] == outputs[1][1] and
              "-10.07" in outputs[0][1])
        check("what is shown is the same", outputs[0][2] == outputs[1][2]
              and len(outputs[0][2]) == 43)


class WallClock:
    """What the programs take for the date, seconds beside the machine's."""

    def __init__(self, bus):
        self.path = f"{bus.folder.name}/offset"
        self.set(0)
        bus.environment |= {
            "LD_PRELOAD": PRELOAD, "QUORIN_CLOCK_OFFSET": self.path,
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}

    def set(self, seconds):
        descriptor = os.open(self.path, os.O_WRONLY | os.O_CREAT, 0o644)
        os.pwrite(descriptor, struct.pack("l", seconds), 0)
        os.close(descriptor)


def a_signal_while_the_name_is_taken_is_no_failure():
    with PrivateBus(BIN) as bus:
        bus.environment |= {
            "LD_PRELOAD": PRELOAD, "QUORIN_INTERRUPTED": "1",
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}
        service = bus.start([f"{BIN}/basebandd", *REPLAY], stderr=subprocess.PIPE)
        came = wait_for(lambda: bus.run("metricctl", "status").returncode == 0 or service.poll() is not None)
        check("the service comes up", came and service.poll() is None)


YEARS = 56 * 365 * 86_400


def a_clock_that_jumps_tears_nothing_apart():
    with PrivateBus(BIN) as bus:
        clock = WallClock(bus)
        clock.set(-YEARS)  # as a phone has it before it knows the date
        bus.service(*REPLAY, "--speed", "20", "--loop")
        path = f"{bus.folder.name}/recorded"
        recorder = bus.start([f"{BIN}/metricctl", "record", path])
        viewer = bus.start([f"{BIN}/quorin-terminal", "--seconds", "8", "--quiet", "--pages",
                            "LTE Serving Cell Meas"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL)
        started = time.time() - YEARS
        for offset in (0, YEARS, -YEARS, 3600, -3600, 0):
            size = os.path.getsize(path) if os.path.exists(path) else 0
            check(f"events come before the clock is set by {offset} s",
                  wait_for(lambda: os.path.exists(path) and os.path.getsize(path) > size))
            clock.set(offset)
        check("and after", wait_for(lambda: os.path.getsize(path) > size + 2000))
        ages = [metric["age_ms"] for metric in bus.status()["metrics"]]
        check(f"ages are not negative, nor years: {ages}", all(0 <= age < 60_000 for age in ages))
        recorder.terminate()
        recorder.wait()
        events = whole_lines("a clock that jumps", open(path, "rb").read())
        lasted = events[-1]["t"] - events[0]["t"]
        check(f"the recording lasts seconds, not years: {lasted} ms", lasted < 60_000)
        check(f"from the date as it was: {events[0]['t'] / 1000 - started}",
              abs(events[0]["t"] / 1000 - started) < 60)
        shown = viewer.communicate(timeout=30)[0]
        ages = [line for line in shown.splitlines() if line.startswith("LTE Serving Cell Meas")]
        check(f"the viewer's ages are of seconds: {ages}",
              ages and all(" 0 s ago" in age or " 1 s ago" in age or "never" in age
                           for age in ages) and "s ago" in ages[-1])


def a_zone_that_changes_is_taken_up():
    zones = pathlib.Path("/usr/share/zoneinfo")
    if not (MAY_MOUNT and os.path.exists("/etc/localtime")):
        return print("  left out: it takes root, mounts of one's own and a machine with a zone")
    with PrivateBus(BIN) as bus:
        del bus.environment["TZ"]
        private_mounts.lay("/etc/localtime", zones / "Europe/Berlin")
        bus.service(*REPLAY, "--speed", "20", "--loop")
        viewer = bus.start([f"{BIN}/quorin-terminal", "--seconds", "13", "--quiet", "--pages",
                            "LTE RRC State"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        time.sleep(6)
        private_mounts.lay("/etc/localtime", zones / "Asia/Tokyo")
        shown = viewer.communicate(timeout=30)[0]
        stamps = [line.split()[2:] for line in shown.splitlines() if " timestamp " in line]
        check(f"times are of the old zone, then of the new one: {stamps}",
              stamps and stamps[0][-1] == "CEST" and stamps[-1][-1] == "JST")
    for _ in range(2):
        subprocess.run(["umount", "/etc/localtime"], check=True)


run(a_disk_that_fills_keeps_what_was_recorded, an_output_that_is_full_is_told,
    recorders_killed_at_any_moment_leave_what_they_recorded,
    a_service_killed_at_any_moment_costs_no_line, a_replay_into_a_service_that_dies_is_told,
    a_bus_that_goes_ends_who_needs_it, a_viewer_that_comes_before_the_service_is_served,
    a_bus_that_is_full_says_so_and_keeps_its_clients,
    a_home_that_cannot_be_written_changes_nothing, another_locale_changes_no_number,
    a_signal_while_the_name_is_taken_is_no_failure,
    a_clock_that_jumps_tears_nothing_apart, a_zone_that_changes_is_taken_up)
