"""desktop_test.py PACKAGING VERSION: what a desktop reads about the application, judged by the desktops'
own checkers, and whether the files speak of one another."""
import configparser
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

PACKAGING, VERSION = pathlib.Path(sys.argv[1]), sys.argv[2]
ID = "org.quorin.viewer"
ENTRY = PACKAGING / f"{ID}.desktop"
METAINFO = PACKAGING / f"{ID}.metainfo.xml"
ICON = PACKAGING / "icons" / f"{ID}.svg"
SYMBOLIC = PACKAGING / "icons" / f"{ID}-symbolic.svg"
BLANK = '<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16"/>'
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def said(*command):
    """What a checker complains about, or nothing."""
    done = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.stdout or "it failed" if done.returncode != 0 else ""


def entry_faults(path):
    # Hints come with exit code 0.
    return subprocess.run(["desktop-file-validate", path], text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT).stdout


def metainfo_faults(path):
    return said("appstreamcli", "validate", "--no-net", "--no-color", "--explain", path)


def drawn(path, size, *options):
    return subprocess.run(["rsvg-convert", f"--width={size}", f"--height={size}", *options, path],
                          stdout=subprocess.PIPE, check=True).stdout


def icon_faults(path):
    faults = said("xmllint", "--nonet", "--noout", path)
    if faults:
        return faults
    with tempfile.NamedTemporaryFile("w", suffix=".svg") as blank:
        blank.write(BLANK)
        blank.flush()
        return " ".join(f"nothing to see at {size} pixels" for size in (16, 48, 256)
                        if drawn(path, size) == drawn(blank.name, size))


def symbolic_faults(path):
    faults = icon_faults(path)
    if faults:
        return faults
    # Desktops give it one colour by the fill of its shapes: in white on white nothing may stay.
    with tempfile.NamedTemporaryFile("w", suffix=".svg") as blank, \
            tempfile.NamedTemporaryFile("w", suffix=".css") as style:
        blank.write(BLANK)
        blank.flush()
        style.write("rect, circle, path { fill: white !important }")
        style.flush()
        white = "--background-color=white"
        if drawn(path, 64, white, f"--stylesheet={style.name}") != drawn(blank.name, 64, white):
            return "parts of it keep their colour"
    return ""


# Path, its checker, and a change that the checker must notice.
ROWS = (
    (ENTRY, entry_faults, ("Name=Quorin\n", "")),
    (ENTRY, entry_faults, ("Categories=Network;", "Categories=Modem;")),
    (METAINFO, metainfo_faults, ("<id>org.quorin.viewer</id>", "")),
    (METAINFO, metainfo_faults, ('version="0', 'versions="0')),
    (ICON, icon_faults, ("</svg>", "")),
    (ICON, icon_faults, ('viewBox="0 0 ', 'viewBox="999 0 ')),
    (SYMBOLIC, symbolic_faults, ("<path", '<path stroke="#2e3436"')),
)


def every_file_is_accepted_and_a_spoilt_one_is_not():
    with tempfile.TemporaryDirectory() as folder:
        for path, faults, (right, wrong) in ROWS:
            check(f"{path.name}: {faults(path)}", not faults(path))
            spoilt = pathlib.Path(folder) / path.name
            spoilt.write_text(path.read_text().replace(right, wrong))
            check(f"{path.name} is accepted with '{wrong}' instead of '{right}'", faults(spoilt))


def the_files_speak_of_one_another():
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(ENTRY)
    entry = parser["Desktop Entry"]
    metainfo = xml.parse(METAINFO).getroot()
    program, *arguments = entry["Exec"].split()
    for what, one, other in (
            ("the icon", entry["Icon"], ICON.stem),
            ("the symbolic icon", entry["Icon"] + "-symbolic", SYMBOLIC.stem),
            ("the identity", metainfo.findtext("id"), ID),
            ("the desktop entry", metainfo.findtext("launchable"), ENTRY.name),
            ("the name", metainfo.findtext("name"), entry["Name"]),
            ("the summary", metainfo.findtext("summary"), entry["Comment"]),
            ("the program", metainfo.findtext("provides/binary"), program),
            # Its log lines hold identities, and a desktop keeps what its programs print.
            ("what it prints", arguments, ["--quiet"]),
            ("the newest release", metainfo.find("releases/release").get("version"), VERSION)):
        check(f"{what}: {one} is not {other}", one == other)


every_file_is_accepted_and_a_spoilt_one_is_not()
the_files_speak_of_one_another()
if failures:
    sys.exit("\n".join(failures))
