"""text_test.py BIN RECORDING: runs the real application on a recording and compares the pages that it
prints with what the page controllers answer; then gives it bad input."""
import json
import subprocess
import sys
import tempfile

BIN, RECORDING = sys.argv[1], sys.argv[2]
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def run(program, *arguments, stdin=None):
    return subprocess.run([f"{BIN}/{program}", *arguments], stdin=stdin, text=True, timeout=120,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def printed_pages(text, keys):
    """The last block of each page: key -> lines under its headline."""
    pages, key = {}, None
    for line in text.splitlines():
        headline = line.split("   ")[0]
        if headline in keys and not line.startswith(" "):
            key = headline
            pages[key] = []
        elif key and line.startswith(" "):
            pages[key].append(line)
        else:
            key = None
    return pages


def expected_lines(sections):
    rows = [row for section in sections for row in section["rows"]]
    if not rows:
        return ["    No entries"]
    width = max(len(text) for text, _ in rows)
    lines = []
    for section in sections:
        if section["header"] is not None:
            lines.append("  " + section["header"])
        for text, detail in section["rows"]:
            lines.append("    " + (text.ljust(width) + "  " + detail if detail else text))
    return lines


with open(RECORDING) as recording:
    controllers = json.loads(run("metricctl", "intake", "--quiet", "--dump", "pages",
                                 stdin=recording).stdout)
unreachable = {"LTE Component Carrier Info", "GSM GPRS Config"}
tree = [key for key in controllers if key not in unreachable]
check("the tree has 43 pages", len(tree) == 43)

played = run("quorin-terminal", "--recording", RECORDING, "--speed", "max")
check("a played recording ends with 0", played.returncode == 0)
pages = printed_pages(played.stdout, set(tree))
check("every page is printed", sorted(pages) == sorted(tree))
for key in tree:
    if pages.get(key) != expected_lines(controllers[key]):
        failures.append(f"{key}: {pages.get(key)} instead of {expected_lines(controllers[key])}")

with open(RECORDING) as recording:
    lines = run("metricctl", "intake", stdin=recording).stdout.splitlines()
wanted = ["pushing metric file", "Querying SIM files", *lines]
check("the log lines stand before the pages, whole and in order",
      [line for line in played.stdout.splitlines() if line in set(wanted)] == wanted)
check("the wrapper logs each event",
      played.stderr.count("-[OsminWrapper listen]_block_invoke: MetricsTrigger dict=") >= 300)

quiet = run("quorin-terminal", "--recording", RECORDING, "--speed", "max", "--quiet", "--pages",
            "LTE RRC State,GSM NAS MM")
check("--pages prints these alone", list(printed_pages(quiet.stdout, set(tree))) ==
      ["LTE RRC State", "GSM NAS MM"] and "Metric ID" not in quiet.stdout)

with tempfile.NamedTemporaryFile("w", suffix=".jsonl") as bad:
    bad.write('{"kKeyMetricID":3952132,"kKeyPayload":"1003"}\nnonsense\n'
              '{"kKeyMetricID":3952132,"kKeyPayload":"xy"}\n[]\n')
    bad.flush()
    run_bad = run("quorin-terminal", "--recording", bad.name, "--speed", "max", "--pages",
                  "LTE RRC State")
    check("unreadable lines are named and the rest is played", run_bad.returncode == 1
          and f"quorin: {bad.name}:2: not JSON" in run_bad.stderr
          and f'quorin: {bad.name}:3: "kKeyPayload" is not hexadecimal' in run_bad.stderr
          and f"quorin: {bad.name}:4: not a JSON object" in run_bad.stderr
          and "    state  KLTE_RRC_STATE_CONNECTED" in run_bad.stdout)

for arguments, words in [
    (["--recording", "/nonexistent.jsonl"], "quorin: /nonexistent.jsonl: No such file or directory"),
    (["--recording", "/"], "quorin: /: is a directory"),
    (["--recording", RECORDING, "--pages", "LTE Nonsense"], 'quorin: no page is called "LTE Nonsense"'),
    (["--speed", "0"], "'0' is no speed"),
    (["--nonsense"], "--nonsense"),
]:
    wrong = run("quorin-terminal", *arguments)
    check(f"{arguments} is wrong use, in words: {wrong.stderr!r}",
          wrong.returncode == 2 and words in wrong.stderr)
check("--help ends with 0", run("quorin-terminal", "--help").returncode == 0)

for failure in failures:
    print("FAILED:", failure)
sys.exit(1 if failures else 0)
