"""redact_test.py BIN RECORDING: recordings without identities, made and checked by metricctl."""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

from checks import check, run
from private_bus import PrivateBus

BIN, RECORDING = sys.argv[1], sys.argv[2]
os.umask(0o022)


def metricctl(*arguments, stdin=""):
    return subprocess.run([f"{BIN}/metricctl", *map(str, arguments)], input=stdin, text=True,
                          timeout=120, stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def dump(what, recording):
    return json.loads(metricctl("intake", "--quiet", "--dump", what, stdin=recording).stdout)


def test_a_recording_becomes_one_without_identities():
    original = open(RECORDING).read()
    redacted = metricctl("redact", stdin=original)
    check("redact takes the whole recording", redacted.returncode == 0 and redacted.stderr == ""
          and redacted.stdout.count("\n") == original.count("\n"))
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "redacted.jsonl"
        file.write_text(redacted.stdout)
        for arguments in [[], ["--against", RECORDING]]:
            checked = metricctl("check-redacted", file, *arguments)
            check(f"the checker takes it: {checked}", checked.returncode == 0
                  and checked.stdout == checked.stderr == "")
        lines = redacted.stdout.splitlines(keepends=True)
        for number, (was, line) in enumerate(zip(original.splitlines(keepends=True), lines)):
            if was == line:
                continue
            file.write_text("".join([*lines[:number], was, *lines[number + 1:]]))
            checked = metricctl("check-redacted", file)
            check(f"line {number + 1} as it was is refused: {checked}", checked.returncode == 1
                  and f"{file}:{number + 1}: " in checked.stderr.splitlines()[0])
    check("redacting again changes nothing",
          metricctl("redact", stdin=redacted.stdout).stdout == redacted.stdout)
    before, after = (dump("pages", recording) for recording in (original, redacted.stdout))
    changed = {page for page in before if before[page] != after[page]}
    check(f"the pages with identities change, and no other: {changed}", changed == {
        "Device Info SIM Files", "LTE NAS", "UMTS NAS MM", "UMTS NAS GMM", "GSM NAS MM",
        "GSM NAS GMM", "LTE Active Bearers", "UMTS Active Bearers", "GSM Active Bearers"})
    check("the IMSI keeps its network and length",
          [dump("records", recording)["myLTE"]["IMSI"] for recording in (original, redacted.stdout)]
          == ["001010123456789", "001010000000001"])


def test_unreadable_lines_are_named_and_left_out():
    redacted = metricctl("redact", stdin='nonsense\n\n{"kKeyMetricID":3952132}\n'
                         '{"kKeyMetricID":3952132,"kKeyPayload":"0880"}\n')
    check(f"what cannot be redacted is left out: {redacted}", redacted.returncode == 1
          and redacted.stdout == '{"kKeyMetricID":3952132}\n'
          and redacted.stderr.splitlines() == [
              "standard input:1: not JSON; left out",
              "standard input:4: KCellularLteRrcState: the payload is malformed; left out"])


def test_the_service_is_recorded_without_identities():
    with PrivateBus(BIN) as bus, tempfile.TemporaryDirectory() as folder:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max", "--loop")
        file = pathlib.Path(folder) / "redacted.jsonl"
        recorded = bus.run("metricctl", "record", "--redact", "--count", "400", str(file))
        check(f"record --redact ends with 0: {recorded}", recorded.returncode == 0)
        check("it wrote so many events", file.read_text().count("\n") == 400)
        checked = metricctl("check-redacted", file, "--against", RECORDING)
        check(f"none of the recording's identities is in it: {checked}", checked.returncode == 0)
        plain = pathlib.Path(folder) / "plain.jsonl"
        bus.run("metricctl", "record", "--count", "400", str(plain))
        check("without --redact they are",
              metricctl("check-redacted", plain).returncode == 1)
        check("and nobody else may read them", plain.stat().st_mode & 0o077 == 0
              and file.stat().st_mode & 0o044 == 0o044)


def test_a_malformed_event_is_left_out_of_what_is_recorded():
    with PrivateBus(BIN) as bus, tempfile.TemporaryDirectory() as folder:
        bus.service("--source", "replay", "--recording", "/dev/null")
        feed = pathlib.Path(folder) / "feed.jsonl"
        feed.write_text("".join(f'{{"kKeyMetricID":3952132,"kKeyPayload":"{payload}"}}\n'
                                for payload in ["0880", "0801", "0802"]))
        file = pathlib.Path(folder) / "redacted.jsonl"
        recorder = bus.start([f"{BIN}/metricctl", "record", "--redact", "--count", "2", str(file)],
                             stderr=subprocess.PIPE)
        while not any(s["events_on"] for s in bus.status()["sessions"]):
            pass
        check("the feed is taken", bus.run("metricctl", "replay", str(feed)).returncode == 0)
        errors = recorder.communicate(timeout=20)[1]
        check(f"the malformed one is named: {errors}", recorder.returncode == 1 and errors ==
              "metricctl: event 1: KCellularLteRrcState: the payload is malformed; left out\n")
        payloads = [json.loads(line)["kKeyPayload"] for line in open(file)]
        check(f"the others are there: {payloads}", payloads == ["0801", "0802"])


run(test_a_recording_becomes_one_without_identities, test_unreadable_lines_are_named_and_left_out,
    test_the_service_is_recorded_without_identities,
    test_a_malformed_event_is_left_out_of_what_is_recorded)
