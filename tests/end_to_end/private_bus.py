"""A private bus with the service on it, for the end-to-end tests. Nothing of the system's own bus is
touched."""
import os
import pathlib
import signal
import subprocess
import tempfile
import time

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>custom</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_destination="*"/>
<allow receive_sender="*"/><allow eavesdrop="true"/></policy></busconfig>"""


def wait_for(what, seconds=10, every=0.01):
    """What `what` gives once it is true, or None when the time is over."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        result = what()
        if result:
            return result
        time.sleep(every)
    return None


class PrivateBus:
    def __init__(self, programs):
        self.programs = programs
        self.folder = tempfile.TemporaryDirectory()
        path = pathlib.Path(self.folder.name) / "bus"
        configuration = pathlib.Path(self.folder.name) / "bus.conf"
        configuration.write_text(CONFIGURATION.format(path=path))
        self.environment = dict(os.environ, BASEBAND_BUS_ADDRESS=f"unix:path={path}", TZ="UTC")
        self.processes = []
        self.start(["dbus-daemon", f"--config-file={configuration}", "--nofork"],
                   stderr=subprocess.DEVNULL)
        if not wait_for(path.exists):
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

    def run(self, program, *arguments, **options):
        return subprocess.run([f"{self.programs}/{program}", *arguments], env=self.environment,
                              text=True, timeout=60, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              **options)

    def service(self, *arguments):
        """Starts the service; it is ready when its name is on the bus."""
        process = self.start([f"{self.programs}/basebandd", *arguments])
        if not wait_for(lambda: self.run("metricctl", "status").returncode == 0):
            raise RuntimeError("the service does not come up")
        return process
