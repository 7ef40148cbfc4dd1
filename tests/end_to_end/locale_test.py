"""locale_test.py BIN RECORDING: the window where numbers have another decimal mark."""
import subprocess
import sys

from checks import check, run
from display import Display, Reader, Window
from private_bus import PrivateBus, wait_for

BIN, RECORDING = sys.argv[1], sys.argv[2]


def page_of(bus, technology, category):
    """The page's lines, opened by the rows' numbers."""
    process = bus.start([f"{BIN}/quorin", "--quiet", "--recording", RECORDING, "--speed", "4000.5",
                         "--seconds", "60.5"], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    window, reader = Window(process), Reader()
    title, lines = "Quorin", None
    for name in (technology, category):
        rows = wait_for(lambda: reader.page(title), seconds=20, every=0.05)
        index = [text for _, text, _ in rows or []].index(name)
        window.keys("Home", *["Down"] * index, "Return")
        title = name
    lines = wait_for(lambda: any("." in row[2] or "," in row[2] for row in reader.page(title) or [])
                     and reader.page(title), seconds=20, every=0.1)
    window.keys("ctrl+q")
    error = process.communicate(timeout=20)[1]
    check(f"it ends with 0: {error}", process.returncode == 0 and not error)
    return lines


def numbers_keep_their_point():
    with Display(), PrivateBus(BIN) as bus:
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", f"{bus.folder.name}/de_DE.UTF-8"],
                       check=True, stderr=subprocess.DEVNULL)
        pages = []
        for locale in ("C.UTF-8", "de_DE.UTF-8"):
            bus.environment |= {"LC_ALL": locale, "LOCPATH": bus.folder.name}
            pages.append(page_of(bus, "LTE", "CA Status"))
        check(f"the pages are the same: {pages}", pages[0] and pages[0] == pages[1])


run(numbers_keep_their_point)
