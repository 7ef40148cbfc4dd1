"""run_test.py SOURCE RECORDING: ./run as a new user types it, without terminal and display."""
import os
import signal
import subprocess
import sys
import tempfile

from checks import check, run
from modem_manager import ModemManager, modem
from private_bus import PrivateBus, wait_for

SOURCE, RECORDING = sys.argv[1], sys.argv[2]
PAGE = ["--pages", "LTE RRC State", "--quiet"]


def processes_of(folder):
    """Process IDs whose command or environment names the folder."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            told = open(f"/proc/{pid}/cmdline").read() + open(f"/proc/{pid}/environ").read()
        except OSError:
            continue
        if folder in told and int(pid) != os.getpid():
            found.append(int(pid))
    return found


class Run:
    """./run in a process group and a folder for temporary files of its own."""

    def __init__(self, *arguments, **variables):
        self.folder = tempfile.TemporaryDirectory()
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        self.process = subprocess.Popen(
            [f"{SOURCE}/run", *arguments], text=True, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True,
            env=dict(environment, TMPDIR=self.folder.name, TZ="UTC", **variables))

    def started(self, program):
        """The process of this program, once it runs."""
        def find():
            for pid in processes_of(self.folder.name):
                try:
                    if os.readlink(f"/proc/{pid}/exe").endswith("/" + program):
                        return pid
                except OSError:
                    pass
        return wait_for(find, seconds=30)

    def ended(self):
        """Exit code and output, after nothing may be left of it."""
        out, err = self.process.communicate(timeout=60)
        left = wait_for(lambda: not processes_of(self.folder.name)) or processes_of(self.folder.name)
        check(f"no process is left: {left}", left is True)
        check(f"no file is left: {os.listdir(self.folder.name)}", not os.listdir(self.folder.name))
        return self.process.returncode, out, err


def it_shows_the_simulated_drive_and_says_so():
    code, out, err = Run("--seconds", "3", *PAGE).ended()
    check(f"it ends with 0: {code} {err}", code == 0)
    check(f"one line says what was started: {err}", err.splitlines()[-1:] == [
        "quorin: started the service with a simulated drive (seed 1) on a private bus, and the "
        "application; a recording instead: ./run FILE"])
    check(f"the last state is printed: {out}", "\nLTE RRC State   last report" in out)


def it_plays_a_file_and_ends_with_it():
    code, out, _ = Run(RECORDING, "--speed", "max", *PAGE).ended()
    check("a recording is over when it is played", code == 0 and "KLTE_RRC_STATE_IDLE" in out)


def it_ends_on_a_signal():
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        started = Run(*PAGE)
        check("the application comes up", started.started("quorin-terminal"))
        os.killpg(started.process.pid, number)
        started.ended()


def it_ends_when_one_of_them_dies():
    for program, expected in (("basebandd", "with-service: the service died"),
                              ("dbus-daemon", "with-service: the private bus died"), ("quorin-terminal", "")):
        started = Run("--seconds", "8", *PAGE)
        check("the application comes up", started.started("quorin-terminal"))
        os.kill(started.started(program), signal.SIGKILL)
        code, _, err = started.ended()
        check(f"{program} died: {code} {err}", code != 0 and expected in err)


def it_names_what_it_cannot_use():
    for arguments, line in ((["nowhere.jsonl"], "run: nowhere.jsonl: cannot be read"),
                            (["--seed", "x"], "run: 'x' is no seed: a whole number"),
                            (["--seed"], "run: --seed needs a value"),
                            (["--speed", "2"], "run: --speed is for a FILE; a drive and a modem have "
                                               "their own pace"),
                            (["--modem", RECORDING],
                             f"run: either --modem or a FILE: '{RECORDING}'")):
        code, _, err = Run(*arguments).ended()
        check(f"{arguments}: {code} {err}", code == 2 and err == line + "\n")


def it_shows_the_machines_modem():
    code, _, err = Run("--modem", DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nowhere").ended()
    check(f"without a bus: {code} {err}", code == 2 and err.splitlines()[-1] == (
        "run: the system bus cannot be reached: No such file or directory; "
        "a simulated drive instead: ./run"))
    with PrivateBus(f"{SOURCE}/build/release/bin") as bus:
        manager = ModemManager(bus.address)
        manager.start()
        code, _, err = Run("--modem", DBUS_SYSTEM_BUS_ADDRESS=bus.address).ended()
        check(f"without a modem: {code} {err}", code == 2 and err.splitlines()[-1] ==
              "run: ModemManager knows no modem; a simulated drive instead: ./run")
        manager.add(0, modem(0))
        code, out, err = Run("--modem", "--seconds", "2", "--quiet", "--pages", "LTE NAS",
                             DBUS_SYSTEM_BUS_ADDRESS=bus.address).ended()
        manager.stop()
    check(f"with one: {code} {err} {out}", code == 0 and "KREG_STATUS_NORMAL_SERVICE" in out
          and err.splitlines()[-1] == "quorin: live modem 0 (Quorin Stand-in), registered, on LTE")


run(it_shows_the_machines_modem, it_shows_the_simulated_drive_and_says_so,
    it_plays_a_file_and_ends_with_it, it_ends_on_a_signal, it_ends_when_one_of_them_dies,
    it_names_what_it_cannot_use)
