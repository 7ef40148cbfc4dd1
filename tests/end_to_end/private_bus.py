"""A private bus with the service on it, for the end-to-end tests. Nothing of the system's own bus is
touched."""
import json
import os
import pathlib
import signal
import socket
import subprocess
import tempfile
import time

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>custom</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_destination="*"/>
<allow receive_sender="*"/><allow eavesdrop="true"/></policy>
<limit name="max_connections_per_user">1000</limit>{policies}</busconfig>"""


def wait_for(what, seconds=10, every=0.01):
    """What `what` gives once it is true, or None when the time is over."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        result = what()
        if result:
            return result
        time.sleep(every)
    return None


def listens_at(path):
    """A socket's file is there a moment before the one who made it listens."""
    with socket.socket(socket.AF_UNIX) as client:
        return client.connect_ex(str(path)) == 0


def resident_kilobytes(process):
    for line in open(f"/proc/{process.pid}/status"):
        if line.startswith("VmRSS"):
            return int(line.split()[1])


def open_files(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


def pages_of(text):
    """The last printed block of each page, without its age."""
    pages = {}
    for block in text.split("\n\n"):
        lines = block.strip("\n").split("\n")
        pages[lines[0].split("   ")[0]] = lines[1:]
    return pages


class PrivateBus:
    def __init__(self, programs, policies=""):
        self.programs = programs
        self.folder = tempfile.TemporaryDirectory()
        path = pathlib.Path(self.folder.name) / "bus"
        configuration = pathlib.Path(self.folder.name) / "bus.conf"
        configuration.write_text(CONFIGURATION.format(path=path, policies=policies))
        self.address = f"unix:path={path}"
        # What the address sanitizer holds back would look like growth of the service.
        self.environment = dict(os.environ, BASEBAND_BUS_ADDRESS=self.address, TZ="UTC",
                                ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1")
        self.processes = []
        self.start(["dbus-daemon", f"--config-file={configuration}", "--nofork"],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not wait_for(lambda: listens_at(path)):
            raise RuntimeError("no private bus")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.send_signal(signal.SIGCONT)
                process.kill()
            process.wait()
        self.folder.cleanup()

    def start(self, command, **options):
        process = subprocess.Popen(command, env=self.environment, text=True, **options)
        self.processes.append(process)
        return process

    def status(self):
        return json.loads(self.run("metricctl", "status", "--json").stdout)

    def calls_during(self, work):
        """What dbus-monitor sees of the calls to the service while `work` runs."""
        monitor = self.start(["dbus-monitor", "--address", self.address,
                              "type='method_call',interface='org.brennic.BasebandManager1'"],
                             stdout=subprocess.PIPE)
        wait_for(lambda: False, seconds=0.3)
        work()
        self.run("metricctl", "status")  # its call pushes what the monitor still buffers
        monitor.terminate()
        return monitor.communicate()[0]

    def run(self, program, *arguments, **options):
        return subprocess.run([f"{self.programs}/{program}", *arguments], env=self.environment,
                              text=True, timeout=60, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              **options)

    def service(self, *arguments, **options):
        """Starts the service; it is ready when its name is on the bus."""
        process = self.start([f"{self.programs}/basebandd", *arguments], **options)
        if not wait_for(lambda: self.run("metricctl", "status").returncode == 0):
            raise RuntimeError("the service does not come up")
        return process
