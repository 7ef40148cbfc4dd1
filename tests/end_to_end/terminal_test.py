"""terminal_test.py BIN RECORDING: the real application on real terminals."""
import fcntl
import json
import os
import pty
import re
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time
import traceback

from private_bus import PrivateBus, wait_for
from tmux import Tmux

BIN, RECORDING = sys.argv[1], sys.argv[2]
PROGRAM = f"{BIN}/quorin-terminal"
PLAYING = f"{PROGRAM} --recording {RECORDING} --speed max"
UNREACHABLE = {"LTE Component Carrier Info", "GSM GPRS Config"}
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)
    return condition


def controllers_pages():
    """What the page controllers answer: technology -> category -> sections."""
    with open(RECORDING) as recording:
        dump = subprocess.run([f"{BIN}/metricctl", "intake", "--quiet", "--dump", "pages"],
                              stdin=recording, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, env=dict(os.environ, TZ="UTC")).stdout
    tree = {}
    for key, sections in json.loads(dump).items():
        if key in UNREACHABLE:
            continue
        technology = next(t for t in ["Device Info", "LTE", "UMTS", "GSM"] if key.startswith(t + " "))
        tree.setdefault(technology, {})[key[len(technology) + 1:]] = sections
    return tree


def shown_rows(lines):
    """The page's rows on a screen: [is a header, text, goes on below itself], blanks squeezed."""
    lines = [re.sub("[•↑↓▁▂▃▄▅▆▇█]", " ", line).rstrip() for line in lines]
    starts = sorted({len(line) - len(line.lstrip()) for line in lines})
    sections = starts[:2] == [1, 3]
    rows = []
    for line in lines:
        start = len(line) - len(line.lstrip())
        if rows and start > (3 if sections else 1):
            rows[-1][1:] = [rows[-1][1] + line.strip(), True]
        else:
            rows.append([sections and start == 1, re.sub(" +", " ", line.strip()), False])
    return rows


def expected_rows(sections):
    rows = []
    for section in sections:
        if section["header"] is not None:
            rows.append([True, section["header"]])
        rows += [[False, f"{text} {detail}".strip()] for text, detail in section["rows"]]
    return rows or [[False, "No entries"]]


def same_row(shown, expected):
    """Behind its detail a row may have a unit."""
    header, text, broken = shown
    wanted = expected[1]
    if broken:
        text, wanted = text.replace(" ", ""), wanted.replace(" ", "")
    return header == expected[0] and re.fullmatch(re.escape(wanted) + r"( \S{1,15})?", text)


def same_rows(shown, expected):
    return len(shown) == len(expected) and all(map(same_row, shown, expected))


def page_lines(screen):
    """The page's lines, of the column of fields where there are several: up to the first blank one."""
    columns = [line.split("│") for line in screen[1:-1]]
    lines = [(parts[2] if len(parts) > 2 else parts[0]).rstrip() for parts in columns]
    return lines[:lines.index("") if "" in lines else None]


def walks_every_page():
    tree = controllers_pages()
    check("the tree has 43 pages", sum(map(len, tree.values())) == 43)
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max")
        with Tmux(90, 60, bus.environment) as terminal:
            terminal.line(f"exec {PROGRAM}")
            check("the first page comes up", terminal.has(" GSM"))
            pages = 0
            for i, (technology, categories) in enumerate(tree.items()):
                if technology == "UMTS":
                    terminal.resize(140, 60)
                terminal.keys("Home", *["Down"] * i, "Enter")
                for j, (category, sections) in enumerate(categories.items()):
                    if category == "CA Status":
                        terminal.resize(100, 30)
                    terminal.keys("Home", *["Down"] * j, "Enter")
                    bar = f" Quorin › {technology} › {category}"
                    expected = expected_rows(sections)

                    def is_shown():
                        screen = terminal.screen()[:-1]
                        return screen[0] == bar and same_rows(shown_rows(page_lines(screen)), expected)
                    if not check(f"{technology} {category}", wait_for(is_shown, 8, 0.02)):
                        print(f"instead of {expected}:", *page_lines(terminal.screen()), sep="\n")
                    if category == "CA Status":
                        resizes(terminal, bar)
                        terminal.resize(90, 60)
                    pages += 1
                    terminal.keys("Escape")
                    wait_for(lambda: terminal.screen()[0] == f" Quorin › {technology}", 5)
                terminal.keys("Escape")
                wait_for(lambda: terminal.screen()[0] == " Quorin", 5)
            check("43 pages were walked", pages == 43)


def resizes(terminal, bar):
    terminal.resize(40, 10)
    check("the smallest screen", wait_for(lambda: terminal.screen()[0] == bar, 5))
    terminal.keys("End")
    check("the header stays in sight", wait_for(
        lambda: terminal.screen()[1].startswith(" Component Carrier 0")
        and any(row.startswith("   rssi") for row in terminal.screen()), 5))
    terminal.resize(30, 5)
    check("too small a screen", terminal.has("quorin needs 40 × 10"))
    terminal.resize(1, 1)
    terminal.resize(220, 50)
    check("a large one", wait_for(lambda: terminal.screen()[0] == bar, 5))


def terminal_state(terminal):
    return terminal.says("#{alternate_on} #{cursor_flag} #{mouse_any_flag} #{keypad_flag} "
                         "#{insert_flag} #{wrap_flag} #{scroll_region_upper} #{scroll_region_lower}")


def leaves_a_clean_terminal():
    broken = tempfile.NamedTemporaryFile("w", suffix=".jsonl")
    broken.write('{"kKeyMetricID":3952132,"kKeyPayload":"1003","t":0}\n{"kKeyPayload":"10","t":1500}\n')
    broken.flush()
    playing = PLAYING + " --quiet"
    fatal = f"{PROGRAM} --recording {broken.name} --quiet"
    ways = [  # what, command, how it is ended, exit status
        ("q", playing, lambda t, pid: t.keys("q"), 0),
        ("Ctrl-C", playing, lambda t, pid: t.keys("C-c"), 0),
        ("SIGTERM", playing, lambda t, pid: os.kill(pid, signal.SIGTERM), 0),
        ("SIGHUP", playing, lambda t, pid: os.kill(pid, signal.SIGHUP), 0),
        ("a fatal stop", fatal, lambda t, pid: None, 134),
        ("SIGABRT", playing, lambda t, pid: os.kill(pid, signal.SIGABRT), 134),
        ("SIGSEGV", playing, lambda t, pid: os.kill(pid, signal.SIGSEGV), 139),
        ("SIGQUIT", playing, lambda t, pid: t.keys("C-\\"), 131),
        ("SIGUSR1", playing, lambda t, pid: os.kill(pid, signal.SIGUSR1), 138),
    ]
    with Tmux(80, 24, dict(os.environ, TZ="UTC")) as terminal, tempfile.TemporaryDirectory() as folder:
        before = terminal_state(terminal)
        for what, command, end, status in ways:
            terminal.run(f"stty -g >{folder}/before; sh -c 'echo $$ >{folder}/pid; exec {command}'")
            if not check(f"{what}: the first page comes up", terminal.has("? keys")):
                print("\n".join(terminal.screen()))
                continue
            check(f"{what}: the screen is owned", terminal_state(terminal).startswith("1 0 1"))
            end(terminal, int(open(f"{folder}/pid").read()))
            if not check(f"{what}: ends with {status}", terminal.ended(status)):
                print("\n".join(terminal.screen()))
            check(f"{what}: {terminal_state(terminal)} instead of {before}",
                  terminal_state(terminal) == before)
            check(f"{what}: nothing is left of the page",
                  not any("? keys" in row for row in terminal.screen()))
            terminal.run(f"stty -g >{folder}/after")
            check(f"{what}: stty can be asked", terminal.ended(0))
            check(f"{what}: stty is as before",
                  open(f"{folder}/before").read() == open(f"{folder}/after").read() != "")


def stops_and_goes_on():
    def state():
        return terminal_state(terminal).split()[:6]
    with Tmux(80, 24, dict(os.environ, TZ="UTC")) as terminal:
        before = state()
        terminal.line("set -m; clear")
        terminal.line(PLAYING)
        check("before Ctrl-Z", terminal.has("? keys"))
        terminal.keys("Down", "Enter")
        check("before Ctrl-Z, LTE", terminal.has("Sel Resel"))
        terminal.keys("C-z")
        check("Ctrl-Z gives the terminal back",
              wait_for(lambda: state() == before, 5))
        terminal.line("echo in between")
        check("the shell goes on", terminal.has("in between"))
        terminal.resize(70, 20)
        terminal.line("fg")
        check("fg brings the page back", terminal.has("Sel Resel")
              and wait_for(lambda: terminal.screen()[0] == " Quorin › LTE", 5))
        check("in its new size", wait_for(lambda: "? keys" in terminal.screen()[19], 5))
        terminal.keys("q", "q")
        check("it ends", wait_for(lambda: state() == before, 5))


def ends_with_its_terminal():
    with Tmux(80, 24) as terminal, tempfile.TemporaryDirectory() as folder:
        terminal.line(f"sh -c 'echo $$ >{folder}/pid; exec {PLAYING}'")
        check("before the terminal goes", terminal.has("? keys"))
        pid = int(open(f"{folder}/pid").read())
        terminal.call("kill-server")
        check("it ends with its terminal", wait_for(lambda: not os.path.exists(f"/proc/{pid}"), 5))


def keeps_log_lines_apart():
    with Tmux(80, 30, dict(os.environ, TZ="UTC")) as terminal, tempfile.TemporaryDirectory() as folder:
        terminal.run(f"{PLAYING} 2>{folder}/errors")
        check("the page is whole", terminal.has("? keys") and wait_for(
            lambda: terminal.screen()[:6] == [" Quorin", " Device Info", " LTE", " UMTS", " GSM", ""], 5))
        terminal.keys("l")
        check("the strip has the log's lines", terminal.has("Received Valid Metric")
              and terminal.has("─ log ─"))
        terminal.keys("q")
        check("it ends", terminal.ended(0))
        errors = open(f"{folder}/errors").read()
        check("standard error goes on to its file",
              errors.count("-[OsminWrapper listen]_block_invoke: MetricsTrigger dict=") >= 300)

        terminal.run(f"{PLAYING} --screen >{folder}/output 2>&1")
        check("the page is shown, with standard output in a file", terminal.has("? keys"))
        wait_for(lambda: open(f"{folder}/output").read().count("Received Valid Metric") >= 200, 5)
        terminal.keys("q")
        check("and ends", terminal.ended(0))
        output = open(f"{folder}/output").read()
        check("all lines are in the file", output.count("Received Valid Metric") >= 200
              and "\033" not in output)

        with open(f"{folder}/bad.jsonl", "w") as bad:
            bad.write("nonsense\n")
        terminal.run(f"{PROGRAM} --recording {folder}/bad.jsonl")
        check("before a complaint", terminal.has("? keys"))
        terminal.keys("l")
        check("the complaint is in the strip", terminal.has("bad.jsonl:1: not JSON"))
        terminal.keys("q")
        check("and is repeated behind the pages", terminal.ended(1)
              and terminal.has("bad.jsonl:1: not JSON"))


def prints_text_where_there_is_no_screen():
    playing = PLAYING + " --quiet"
    with Tmux(100, 60) as terminal:
        for name, why in [("dumb", 'a terminal of type "dumb" cannot place its cursor'),
                          ("nonsense", 'the terminal type "nonsense" is not known here')]:
            terminal.run(f"TERM={name} {playing} --pages 'LTE NAS' --seconds 0.2")
            check(f"TERM={name}: --pages prints text, and that is no surprise",
                  terminal.ended(0) and not any("quorin: " in row for row in terminal.screen()))
            terminal.run(f"TERM={name} {playing} --seconds 0.2 2>&1 | grep -v '^ '")
            check(f"TERM={name}: a pipe takes text",
                  terminal.ended(0) and terminal.has("GSM Active Bearers"))
            terminal.run(f"TERM={name} {playing} --seconds 0.2 --screen | tail -n 1")
            check(f"TERM={name}: says why there is no screen", terminal.ended(0)
                  and terminal.has(f"quorin: {why}; the pages are printed as text"))
        terminal.run(f"{playing} | grep -c 'LTE RRC State   last'")
        check("a page is printed under its key", terminal.ended(0) and "1" in terminal.screen())
    both = subprocess.run([PROGRAM, "--recording", RECORDING, "--screen", "--text"],
                          text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    check(f"--screen excludes --text: {both.stderr}",
          both.returncode == 2 and both.stderr.count("\n") == 1)
    nowhere = subprocess.run([*playing.split(), "--seconds", "0.2", "--screen"], text=True,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                             start_new_session=True)
    check(f"no terminal at all: {nowhere.stderr}", nowhere.returncode == 0
          and nowhere.stderr.startswith("quorin: the terminal cannot be opened: ")
          and "GSM Active Bearers" in nowhere.stdout)


class SlowLine:
    """A terminal behind 9600 baud: 960 bytes a second, in pieces of a twentieth of a second."""
    def __init__(self, command):
        self.end, terminal = pty.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
        self.process = subprocess.Popen(
            ["setsid", "--ctty", *command], stdin=terminal, stdout=terminal, stderr=terminal,
            env=dict(os.environ, TERM="xterm-256color", LC_ALL="C.UTF-8", TZ="UTC"))
        os.close(terminal)

    def settings(self):
        return termios.tcgetattr(self.end)[3]

    def burst(self, seconds, quiet=0.4):
        """The bytes that come within so many seconds until there is a pause behind them."""
        taken, end = b"", time.monotonic() + seconds
        while time.monotonic() < end:
            if select.select([self.end], [], [], quiet)[0]:
                try:
                    taken += os.read(self.end, 48)
                except OSError:  # nobody has the terminal open any more
                    break
                time.sleep(0.05)
            elif taken:
                break
        return taken


def ends_although_the_terminal_takes_nothing():
    line = SlowLine(PLAYING.split())
    wait_for(lambda: line.settings() & termios.ECHO == 0, 5)
    check("its settings are ours", line.settings() & (termios.ECHO | termios.ICANON) == 0)
    for _ in range(100):  # each paints a screen, until the line is full
        os.write(line.end, b"?")
        time.sleep(0.02)
    line.process.send_signal(signal.SIGTERM)
    check("a stalled terminal does not hold up the end", wait_for(
        lambda: line.process.poll() == -signal.SIGTERM, 12, 0.1))
    check("its settings are as before",
          line.settings() & (termios.ECHO | termios.ICANON) == termios.ECHO | termios.ICANON)
    line.process.kill()
    os.close(line.end)


def sint(tag, value):
    zigzag = value * 2 if value >= 0 else -value * 2 - 1
    return bytes([tag, zigzag & 0x7f | 0x80, zigzag >> 7]) if zigzag > 127 else bytes([tag, zigzag])


def repaints_five_values_over_a_slow_line():
    with tempfile.NamedTemporaryFile("w", suffix=".jsonl") as recording:
        for i in range(40):  # a report each half second, all five values new
            sample = b"".join(sint(tag, value) for tag, value in zip(
                [0x20, 0x28, 0x38, 0x40, 0x50],
                [-140 + i * 7 % 90, -44 - i * 11 % 90, -3 - i * 5 % 27, -30 + i * 3 % 27, i * 13 % 60 - 20]))
            payload = b"\x7a" + bytes([len(sample)]) + sample
            recording.write(json.dumps({"kKeyMetricID": 3952490, "kKeyPayload": payload.hex(),
                                        "kKeyProfileID": 0, "t": i * 500}) + "\n")
        recording.flush()
        line = SlowLine([PROGRAM, "--recording", recording.name, "--quiet"])
        line.burst(5)
        os.write(line.end, b"j\r")
        line.burst(5)
        os.write(line.end, b"jjj\r")
        first = line.burst(5)
        check("the page is painted in two seconds", b"rsrp0" in first and len(first) < 1920)
        updates = []
        end = time.monotonic() + 11.5
        while time.monotonic() < end:
            updates.append(line.burst(1))
        sizes = sorted(map(len, updates))[-2:]
        print(f"9600 baud: {len(first)} bytes for the page, {sizes} for an update of five values")
        check(f"two updates of five values, each under 300 bytes: {sizes}",
              60 < sizes[0] <= sizes[1] < 300)
        check("all else is the age", all(len(update) < 30 for update in updates
                                         if len(update) not in sizes))
        os.write(line.end, b"qqq")
        check("it ends over a slow line", wait_for(
            lambda: (line.burst(0.3, 0.05), line.process.poll())[1] == 0, 10))
        os.close(line.end)


def run(part):
    start = time.monotonic()
    try:
        part()
    except Exception:  # the other parts still have their say
        failures.append(f"{part.__name__}: {traceback.format_exc()}")
    print(f"{part.__name__}: {time.monotonic() - start:.1f} s")


slow = [threading.Thread(target=run, args=[part]) for part in
        [repaints_five_values_over_a_slow_line, ends_although_the_terminal_takes_nothing]]
for thread in slow:
    thread.start()
for part in [walks_every_page, leaves_a_clean_terminal, stops_and_goes_on, ends_with_its_terminal,
             keeps_log_lines_apart, prints_text_where_there_is_no_screen]:
    run(part)
for thread in slow:
    thread.join()
for failure in failures:
    print("FAILED:", failure)
sys.exit(1 if failures else 0)
