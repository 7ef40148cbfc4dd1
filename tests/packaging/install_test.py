"""install_test.py CMAKE BUILD [window]: what `cmake --install` puts where, and that the programs find
their files there."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

CMAKE, BUILD, WINDOW = sys.argv[1], sys.argv[2], sys.argv[3:] == ["window"]
FILES = """
bin/basebandd
bin/metricctl
bin/quorin-terminal
lib/systemd/system/basebandd.service
lib/sysusers.d/basebandd.conf
share/dbus-1/system-services/org.brennic.BasebandManager1.service
share/dbus-1/system.d/org.brennic.BasebandManager1.conf
share/dbus-1/system.d/org.quorin.basebandd.ModemManager.conf
share/doc/quorin-common/copyright
share/doc/quorin-service/copyright
share/doc/quorin-terminal/copyright
share/doc/quorin-tools/copyright
share/polkit-1/rules.d/60-basebandd.rules
share/quorin/drive.jsonl
share/quorin/zef_test_lte.deviceconfig
"""
WINDOW_FILES = """
bin/quorin
share/applications/org.quorin.viewer.desktop
share/doc/quorin/copyright
share/icons/hicolor/scalable/apps/org.quorin.viewer.svg
share/icons/hicolor/symbolic/apps/org.quorin.viewer-symbolic.svg
share/metainfo/org.quorin.viewer.metainfo.xml
"""
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def install(prefix, stage=""):
    subprocess.run([CMAKE, "--install", BUILD, "--prefix", prefix], check=True,
                   stdout=subprocess.DEVNULL, env=dict(os.environ, DESTDIR=stage))
    return pathlib.Path(stage + prefix)


def started(folder):
    """What the viewer prints first, without a bus."""
    environment = dict(os.environ, BASEBAND_BUS_ADDRESS=f"unix:path={folder}/no-bus")
    done = subprocess.run([folder / "bin/quorin-terminal", "--seconds", "0.1"], env=environment,
                          text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60)
    return done.stdout.split("\n")[0]


def everything_has_its_place(folder, prefix):
    expected = sorted((FILES + (WINDOW_FILES if WINDOW else "")).split())
    found = sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())
    check(f"{found} instead of {expected}", found == expected)
    unit = (folder / "lib/systemd/system/basebandd.service").read_text()
    check(f"the unit does not start {prefix}/bin/basebandd",
          f"\nExecStart={prefix}/bin/basebandd " in unit)


def the_viewers_find_their_files(folder):
    check(f"the viewer finds its configuration: {started(folder)}",
          started(folder) == "pushing metric file")
    shutil.rmtree(folder / "share/quorin")
    check(f"nowhere but there: {started(folder)}",
          started(folder) == "Metric Log File path doesnt exist")


with tempfile.TemporaryDirectory() as work:
    for prefix, stage in (("/usr", work + "/stage"), (work + "/another", "")):
        folder = install(prefix, stage)
        everything_has_its_place(folder, prefix)
        the_viewers_find_their_files(folder)
if failures:
    sys.exit("\n".join(failures))
