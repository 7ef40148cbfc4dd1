"""with_service_test.py BIN RECORDING: tools/dev/with-service, with these programs in its place."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile

from checks import check, run
from private_bus import wait_for

BIN, RECORDING = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
REPLAY = f"--source replay --recording {RECORDING}"
COMMAND = ["tail", "-f", "/dev/null"]  # goes on without end
SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "tools/dev/with-service"


class Tree:
    """A source tree in which the script stands, and where its temporary folders go."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        root = pathlib.Path(self.folder.name)
        for part in ("tools/dev", "build/release", "temporary"):
            (root / part).mkdir(parents=True)
        (root / "build/release/bin").symlink_to(BIN)
        self.script = str(root / "tools/dev/with-service")
        shutil.copy(SCRIPT, self.script)
        self.temporary = root / "temporary"
        self.environment = dict(os.environ, TMPDIR=str(self.temporary))
        return self

    def __exit__(self, *_):
        self.folder.cleanup()

    def start(self, *arguments):
        return subprocess.Popen([self.script, *arguments], env=self.environment, text=True,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                start_new_session=True)

    def processes(self, program=""):
        """Those that know of a temporary folder of this tree: the bus, the service, the command."""
        found = []
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                known = (process / "environ").read_bytes() + (process / "cmdline").read_bytes()
                name = (process / "comm").read_text().strip()
            except OSError:
                continue
            if str(self.temporary).encode() in known and name.startswith(program):
                found.append(int(process.name))
        return found

    def command(self):
        return self.processes("tail")

    def check_that_nothing_is_left(self, after):
        check(f"no process is left {after}: {self.processes()}", wait_for(lambda: not self.processes()))
        left = list(self.temporary.iterdir())
        check(f"no folder is left {after}: {left}", not left)


def its_exit_status_is_the_commands():
    with Tree() as tree:
        for status in (0, 7):
            ended = tree.start(REPLAY, "sh", "-c", f'cat; "{BIN}/metricctl" status; exit {status}')
            out, err = ended.communicate("what stands on standard input\n", timeout=30)
            check(f"{status}: {ended.returncode} {err}", ended.returncode == status and err == "")
            check(f"the command reads, and reaches the service: {out}",
                  out.startswith(f"what stands on standard input\nsource    replay of {RECORDING}"))
            tree.check_that_nothing_is_left("after the command")


def arguments_reach_the_command_as_they_are():
    with Tree() as tree:
        ended = tree.start(REPLAY, "printf", "<%s>", "two words", "", "*", "$HOME")
        check("words, empty ones and signs", ended.communicate(timeout=30)[0] == "<two words><><*><$HOME>")


def the_command_ends_when_the_service_dies():
    with Tree() as tree:
        started = tree.start(REPLAY, *COMMAND)
        check("the command runs", wait_for(tree.command))
        for service in tree.processes("basebandd"):
            os.kill(service, signal.SIGKILL)
        err = started.communicate(timeout=10)[1]
        check(f"with 1 and one line: {started.returncode} {err!r}",
              started.returncode == 1 and err == "with-service: the service died\n")
        tree.check_that_nothing_is_left("after the service")


def signals_end_everything():
    for number, everyone in [(signal.SIGTERM, False), (signal.SIGINT, True), (signal.SIGHUP, False)]:
        with Tree() as tree:
            started = tree.start(REPLAY, *COMMAND)
            check("the command runs", wait_for(tree.command))
            (os.killpg if everyone else os.kill)(started.pid, number)
            try:
                started.communicate(timeout=10)
            except subprocess.TimeoutExpired:
                check(f"{number!r} ends it", False)
                os.killpg(started.pid, signal.SIGKILL)
            check(f"{number!r} is told by the exit status: {started.returncode}",
                  started.returncode == (130 if number == signal.SIGINT else 143))
            tree.check_that_nothing_is_left(f"after {number!r}")


def a_service_that_does_not_come_up_is_said():
    with Tree() as tree:
        started = tree.start("--source nonsense", "true")
        err = started.communicate(timeout=30)[1]
        check(f"with 1: {started.returncode} {err!r}", started.returncode == 1
              and err.startswith("with-service: the service does not come up: "
                                 "basebandd: there is no source 'nonsense'")
              and err.count("\n") == 1)
        tree.check_that_nothing_is_left("after a service that did not come up")


run(its_exit_status_is_the_commands, arguments_reach_the_command_as_they_are,
    the_command_ends_when_the_service_dies, signals_end_everything,
    a_service_that_does_not_come_up_is_said)
