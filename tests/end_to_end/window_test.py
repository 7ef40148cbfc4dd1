"""window_test.py BIN RECORDING: the real application in a real X display against the real service, read
as a screen reader reads it and driven by keys alone."""
import json
import subprocess
import sys
import tempfile
import time

from checks import check, run
from display import Display, Reader, Window
from private_bus import PrivateBus, wait_for

BIN, RECORDING = sys.argv[1], sys.argv[2]
RELOAD = 5  # seconds


def controllers():
    with open(RECORDING) as recording:
        dumped = subprocess.run([f"{BIN}/metricctl", "intake", "--quiet", "--dump", "pages"],
                                stdin=recording, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL)
    return json.loads(dumped.stdout)


def as_read(sections):
    lines = []
    for section in sections:
        if section["header"] is not None:
            lines.append(("heading", section["header"], ""))
        lines += [("list item", text, detail) for text, detail in section["rows"]]
    return lines


class Application:
    def __init__(self, bus, *arguments):
        self.process = bus.start([f"{BIN}/quorin", "--quiet", *arguments],
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.window = Window(self.process)
        self.reader = Reader()
        self.opened("Quorin", 4)

    def opened(self, title, count):
        def lines():
            read = self.reader.page(title)
            return (read,) if read is not None and len(read) == count else None
        found = wait_for(lines, seconds=RELOAD + 5, every=0.02)
        check(f"the page {title} opens with {count} lines: {self.reader.page(title)}", found)
        return found[0] if found else None

    def open_row(self, index):
        self.window.keys("Home", *["Down"] * index, "Return")

    def end(self, *keys):
        self.window.keys(*keys)
        err = self.process.communicate(timeout=20)[1]
        check(f"it ends with 0 and says nothing: {err}", self.process.returncode == 0 and not err)


TREE = ("Device Info", "LTE", "UMTS", "GSM")


def every_page_shows_what_the_controllers_answer():
    expected = controllers()
    walked = 0
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max")
        application = Application(bus, "--size", "390x844")
        for i, technology in enumerate(TREE):
            application.open_row(i)
            categories = application.opened(technology, sum(
                key.startswith(technology + " ") and key not in
                ("LTE Component Carrier Info", "GSM GPRS Config") for key in expected))
            for j, (_, category, _) in enumerate(categories or []):
                lines = as_read(expected[f"{technology} {category}"])
                application.open_row(j)
                seen = application.opened(category, len(lines))
                if seen != lines:  # what came after it was opened shows at its next reload
                    seen = wait_for(lambda: application.reader.page(category) == lines and lines,
                                    seconds=RELOAD + 2, every=0.1)
                check(f"{technology} {category}: {application.reader.page(category)} instead of "
                      f"{lines}", seen == lines)
                empty = application.reader.node("label", "No entries") is not None
                check(f"{technology} {category} says whether it is empty", empty == (not lines))
                walked += 1
                application.window.keys("Escape")
            application.window.keys("BackSpace")
        check(f"43 pages: {walked}", walked == 43)
        application.end("ctrl+q")


def new_values_are_seen_at_the_first_reload_after_the_event():
    with PrivateBus(BIN) as bus, tempfile.NamedTemporaryFile("w", suffix=".jsonl") as event:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max")
        encoded = bus.run("metricctl", "encode", "--id", "3952132",
                          input='{"timestamp":1500,"prev_state_dur_ms":4711}')
        event.write(json.dumps({"kKeyMetricID": 3952132, "kKeyPayload": encoded.stdout.strip()}))
        event.flush()
        application = Application(bus, "--size", "1100x760")
        application.open_row(1)
        application.opened("LTE", 14)
        opened = time.monotonic()
        application.open_row(1)
        wait_for(lambda: application.reader.page("RRC State"))
        time.sleep(1)
        fed = bus.run("metricctl", "replay", event.name)
        check(f"the event is fed: {fed.stderr}", fed.returncode == 0)
        shown = ("list item", "prev_state_dur_ms", "4711")
        check("it is not shown before the reload",
              shown not in (application.reader.page("RRC State") or [shown]))
        seen = wait_for(lambda: shown in (application.reader.page("RRC State") or []),
                        seconds=RELOAD + 2)
        check(f"it is shown at the reload, {time.monotonic() - opened:.1f} s after the page came",
              seen)
        labels = [name for role, name, _ in application.reader.everything() if role == "label"]
        check(f"the page says how old it is: {labels}",
              any(name.startswith("last report ") for name in labels))
        application.end("ctrl+q")


def the_three_columns_share_one_stack():
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max")
        application = Application(bus, "--size", "1100x760")
        reader, window = application.reader, application.window
        application.open_row(1)
        application.opened("LTE", 14)
        application.open_row(1)
        wait_for(lambda: reader.page("RRC State"))
        check("technology, category and fields side by side",
              reader.page("Quorin") and reader.page("LTE") and reader.page("RRC State"))
        window.keys("Left", "Left")
        check("focus goes left", wait_for(lambda: reader.focused() == ("list item", "LTE")))
        window.keys("Down", "Return")
        check("another technology", wait_for(lambda: reader.page("UMTS")) is not None)
        check("its page replaces what stood behind", reader.page("RRC State") is None)
        window.resize(500, 760)
        check("narrow: one page", wait_for(lambda: reader.page("Quorin") is None))
        reader.press("push button", "Back")
        check("the back control", wait_for(lambda: reader.page("Quorin")) is not None)
        reader.press("list item", "GSM")
        check("the press action of a row", wait_for(lambda: reader.page("GSM")) is not None)
        window.click(250, 400, button=8)
        check("the mouse's back button", wait_for(lambda: reader.page("Quorin")) is not None)
        application.end("ctrl+q")


def what_is_typed_is_found_and_rows_are_copied():
    with PrivateBus(BIN) as bus:
        bus.service("--source", "replay", "--recording", RECORDING, "--speed", "max")
        application = Application(bus, "--size", "390x844")
        reader, window = application.reader, application.window
        application.open_row(1)
        application.opened("LTE", 14)
        window.keys("c", "a", "space", "s")
        check(f"type to find: {reader.focused()}",
              wait_for(lambda: reader.focused() == ("list item", "CA Status")))
        window.keys("Escape", "Return")
        check("it opens", wait_for(lambda: reader.page("CA Status")) is not None)
        window.keys("Down", "Down", "Return")
        check("every row of it leads to the placeholder",
              wait_for(lambda: reader.page("Field")) == [("list item", "Field", "")])
        window.keys("Escape", "Menu")
        check("the menu", wait_for(lambda: reader.node("menu item", "Copy page")) is not None)
        window.keys("Escape")
        check("is gone", wait_for(lambda: reader.node("menu item", "Copy page") is None))
        application.end("ctrl+q")


def without_a_display_it_says_so():
    with PrivateBus(BIN) as bus:
        environment = dict(bus.environment)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            environment.pop(name, None)
        for display, line in ((None, "quorin: there is no display; in a terminal: quorin-terminal\n"),
                              (":4711", None)):
            if display:
                environment["DISPLAY"] = display
            ended = subprocess.run([f"{BIN}/quorin"], env=environment, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=30)
            check(f"{display}: {ended.returncode} {ended.stderr}", ended.returncode == 2 and
                  all(said.startswith("quorin: ") for said in ended.stderr.splitlines()) and
                  (line is None or ended.stderr == line))


without_a_display_it_says_so()
with Display():
    run(every_page_shows_what_the_controllers_answer,
        new_values_are_seen_at_the_first_reload_after_the_event,
        the_three_columns_share_one_stack, what_is_typed_is_found_and_rows_are_copied)
