"""metricctl_test.py BIN RECORDING: the commands of metricctl as a script uses them."""
import json
import subprocess
import sys

BIN, RECORDING = sys.argv[1], sys.argv[2]
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def metricctl(*arguments, stdin=""):
    return subprocess.run([f"{BIN}/metricctl", *arguments], input=stdin, text=True, timeout=120,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)


decoded = metricctl("decode", "--class", "KCellularLteRrcState",
                    stdin="0801\n\n08\nA0E0090508FFFFFFFFFFFFFFFFFF01\n")
check("decode ends with 0", decoded.returncode == 0)
check("decode gives one compact object a line, in order", decoded.stdout.splitlines() == [
    '{"ok":true,"dict":{"timestamp":1},"reencoded":"0801","log":[]}',
    '{"ok":true,"dict":{},"reencoded":"","log":[]}',
    '{"ok":false,"dict":{"timestamp":0},"reencoded":"0800","log":[]}',
    '{"ok":true,"dict":{"timestamp":18446744073709551615},'
    '"reencoded":"08ffffffffffffffffff01","log":["valid metricId tag","Unknown tag: 4e04:5"]}'])
check("decode takes a metric ID in both forms",
      metricctl("decode", "--id", "0x3C4E04", stdin="1003\n").stdout ==
      metricctl("decode", "--id", "3952132", stdin="1003\n").stdout != "")
text = metricctl("decode", "--class", "KCellularLteRsrpRsrqSinr", stdin="1a0461ff2208\n").stdout
check("texts are always valid JSON", json.loads(text)["dict"]["call_id"] == 'a\ufffd"\b')
flags = metricctl("decode", "--class", "KCellularWcdmaRrcConfiguration", stdin="18012000\n").stdout
check("booleans are booleans",
      '"dict":{"is_mimo_configured":true,"is_dc_configured":false}' in flags)

unreadable = metricctl("decode", "--class", "Guti", stdin="0801\nxyz\n080\n0802\n")
check("unreadable lines are named, the others decoded", unreadable.returncode == 1
      and unreadable.stderr.splitlines() == ["standard input:2: not hexadecimal",
                                             "standard input:3: not hexadecimal"]
      and len(unreadable.stdout.splitlines()) == 2)

payloads = {}
for line in open(RECORDING):
    event = json.loads(line)
    payloads.setdefault(str(event["kKeyMetricID"]), []).append(event["kKeyPayload"] + "\n")
for metric, lines in payloads.items():
    whole = metricctl("decode", "--id", metric, stdin="".join(lines))
    back = metricctl("encode", "--id", metric, stdin=whole.stdout)
    check(f"encode gives back what decode took of {metric}", back.stdout == "".join(lines))
for wrong, words in [('{"state":"x"}', '"state" is no name of KLTE_RRC_STATE'),
                     ('{"timestamp":-1}', '"timestamp" is not an integer of its field\'s range'),
                     ('{"nonsense":1}', '"nonsense" is no key of KCellularLteRrcState'),
                     ('[1]', "the line is not an object"), ("{", "not JSON")]:
    refused = metricctl("encode", "--class", "KCellularLteRrcState", stdin=wrong + "\n")
    check(f"encode refuses {wrong}: {refused.stderr}", refused.returncode == 1
          and refused.stderr == f"standard input:1: {words}\n" and refused.stdout == "")
negative = metricctl("encode", "--class", "KCellularLteRrcState", stdin='{"state":"(unknown: -5)"}\n')
check("encode takes a value without a name", negative.stdout == "10fbffffffffffffffff01\n")

for arguments in [["decode"], ["decode", "--class", "Nonsense"], ["decode", "--id", "1"],
                  ["decode", "--class", "Guti", "--id", "1"], ["nonsense"], [],
                  ["intake", "--dump", "nonsense"], ["schema", "--format", "nonsense"]]:
    wrong = metricctl(*arguments)
    check(f"{arguments} is wrong use: {wrong.stderr!r}", wrong.returncode == 2
          and wrong.stderr.startswith("metricctl: ") and wrong.stderr.count("\n") == 1)
listed = metricctl("--help").stdout.partition("Subcommands:\n")[2].partition("\n\n")[0]
check(f"help lists the commands in the order in which one needs them: {listed}",
      [line.split()[0] for line in listed.splitlines()] ==
      ["decode", "encode", "schema", "import", "intake", "watch", "record", "redact",
       "check-redacted", "replay", "status", "pause", "step", "resume"])
for arguments in [["--help"], ["decode", "--help"]]:
    check(f"{arguments} ends with 0", metricctl(*arguments).returncode == 0)

EVENT = '{"kKeyMetricID":3952132,"kKeyPayload":"1003","kKeyProfileID":0,"t":5}\n'
intake = metricctl("intake", "--dump", "stores", stdin=EVENT + "\n" + EVENT)
check("intake prints the store's lines and the document on one line", intake.returncode == 0
      and intake.stdout.splitlines()[:3] == [
          "Metric ID in Hex = 3C4E04",
          "Current RRC state is [state: KLTE_RRC_STATE_CONNECTED]", "Received Valid Metric"]
      and len(intake.stdout.splitlines()) == 7)
stores = json.loads(intake.stdout.splitlines()[-1])
check("all 31 stores are dumped by name", len(stores) == 31
      and stores["myLTERRCStateDict"] == {"state": "KLTE_RRC_STATE_CONNECTED"}
      and stores["myLTESCellMeasDict"] == {})
check("--quiet leaves the document alone",
      json.loads(metricctl("intake", "--quiet", "--dump", "stores", stdin=EVENT + EVENT).stdout) == stores)
records = json.loads(metricctl("intake", "--quiet", "--dump", "records", stdin="").stdout)
check("all 25 record members are dumped",
      {name: len(members) for name, members in records.items()} ==
      {"myLTE": 11, "myUMTS": 9, "myGSM": 3, "myCommon": 2})
pages = json.loads(metricctl("intake", "--quiet", "--dump", "pages", stdin="").stdout)
check("45 pages are dumped", len(pages) == 45)

for event, why in [('{"kKeyPayload":"1003"}', "an event without a metric ID"),
                   ('{"kKeyMetricID":3952132.0}', "a real metric ID"),
                   ('{"kKeyMetricID":"3952132"}', "a text as metric ID"),
                   ('{"kKeyMetricID":true}', "a boolean as metric ID"),
                   ('{"kKeyMetricID":18446744073709551615}', "a metric ID of 64 bits")]:
    fatal = metricctl("intake", "--dump", "stores", stdin=EVENT + event + "\n" + EVENT)
    check(f"{why} is fatal, behind what was printed: {fatal}", fatal.returncode == -6
          and fatal.stdout.splitlines()[-1] == "Received Valid Metric"
          and len(fatal.stdout.splitlines()) == 3)
broken = metricctl("intake", stdin='{"kKeyMetricID":3952132,"kKeyPayload":"10"}\n')
check("a payload that does not decode is fatal behind the ID's line",
      broken.returncode == -6 and broken.stdout == "Metric ID in Hex = 3C4E04\n")
for event in ['{"kKeyMetricID":3952132}', '{"kKeyMetricID":3952132,"kKeyPayload":5}',
              '{"kKeyMetricID":3952132,"kKeyPayload":null}']:
    absent = metricctl("intake", stdin=event + "\n")
    check(f"{event} stores an empty message",
          absent.stdout.splitlines()[1] == "Current RRC state is [:]")
lines = metricctl("intake", stdin="nonsense\n" + EVENT + '{"kKeyMetricID":3952132,"kKeyPayload":"1"}\n')
check("unreadable lines are named and passed over", lines.returncode == 1
      and "standard input:1: not JSON" in lines.stderr
      and 'standard input:3: "kKeyPayload" is not hexadecimal' in lines.stderr
      and lines.stdout.count("Received Valid Metric") == 1)

for failure in failures:
    print("FAILED:", failure)
sys.exit(1 if failures else 0)
