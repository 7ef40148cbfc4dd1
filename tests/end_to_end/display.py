"""An X display with a session bus and assistive technology of its own, and the application in it as a
screen reader sees it. Needs the system's Python, for which pyatspi is packaged."""
import os
import signal
import subprocess
import tempfile
import time

from private_bus import wait_for


class Display:
    def __init__(self, size="1400x1000", accessible=True):
        self.folder = tempfile.TemporaryDirectory()
        self.processes = []
        reading, writing = os.pipe()
        self._start(["Xvfb", "-noreset", "-displayfd", str(writing), "-screen", "0", f"{size}x24",
                     "-nolisten", "tcp"], pass_fds=[writing])
        os.close(writing)
        number = os.fdopen(reading).readline().strip()
        self.environment = {"DISPLAY": f":{number}", "XDG_RUNTIME_DIR": self.folder.name,
                            "LIBGL_ALWAYS_SOFTWARE": "1"}
        bus = self._start(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          stdout=subprocess.PIPE, text=True,
                          env=dict(os.environ, **self.environment))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        if accessible:
            self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ.update(self.environment)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        self.folder.cleanup()

    def _start(self, command, **options):
        options.setdefault("stdout", subprocess.DEVNULL)
        process = subprocess.Popen(command, stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process


class Window:
    """The application's window. Keys go to it as if they were typed."""

    def __init__(self, process):
        self.process = process
        # A display without a window manager gives the focus to nobody.
        self.id = wait_for(lambda: self._tool("search", "--onlyvisible", "--pid", str(process.pid)),
                           seconds=20, every=0.05)
        if not self.id:
            raise RuntimeError("no window")
        self._tool("windowfocus", "--sync", self.id)

    def _tool(self, *arguments):
        done = subprocess.run(["xdotool", *arguments], text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
        return done.stdout.strip().split("\n")[-1] if done.returncode == 0 else None

    def keys(self, *names):
        if names:
            self._tool("key", "--delay", "4", *names)

    def click(self, x, y, button=1):
        self._tool("mousemove", "--window", self.id, str(x), str(y))
        self._tool("click", str(button))

    def resize(self, width, height):
        self._tool("windowsize", "--sync", self.id, str(width), str(height))

    def picture(self, path):
        subprocess.run(["import", "-window", self.id, path], check=True)


def nothing_while_it_changes(question):
    """None, as long as nodes go while they are read."""
    def asked(*arguments):
        from gi.repository import GLib
        try:
            return question(*arguments)
        except GLib.Error:
            return None
    return asked


class Reader:
    """What a screen reader learns of the application, read anew at each question."""

    def __init__(self):
        import pyatspi
        self.atspi = pyatspi

    def _walk(self, node):
        for i in range(node.childCount):
            child = node.getChildAtIndex(i)
            if child is not None:
                yield child
                yield from self._walk(child)

    def everything(self):
        """(role, name, description) of every node."""
        found = []
        for application in self.atspi.Registry.getDesktop(0):
            if application is not None and application.name == "quorin":
                for node in self._walk(application):
                    found.append((node.getRoleName(), node.name, node.description))
        return found

    @nothing_while_it_changes
    def page(self, title):
        """The direct children of the list with this title, or None."""
        for application in self.atspi.Registry.getDesktop(0):
            if application is None or application.name != "quorin":
                continue
            for node in self._walk(application):
                if node.getRoleName() == "list" and node.name == title:
                    children = [node.getChildAtIndex(i) for i in range(node.childCount)]
                    if None in children:  # it changes at this moment
                        return None
                    return [(child.getRoleName(), child.name, child.description)
                            for child in children]
        return None

    @nothing_while_it_changes
    def node(self, role, name):
        for application in self.atspi.Registry.getDesktop(0):
            if application is None or application.name != "quorin":
                continue
            for node in self._walk(application):
                if node.getRoleName() == role and node.name == name:
                    return node
        return None

    def press(self, role, name):
        """Does the press action of this node, once it is there."""
        action = wait_for(lambda: self.node(role, name)).queryAction()
        names = [action.getName(i) for i in range(action.nActions)]
        action.doAction(names.index("Press"))

    @nothing_while_it_changes
    def focused(self):
        """Role and name of the focused line."""
        for application in self.atspi.Registry.getDesktop(0):
            if application is None or application.name != "quorin":
                continue
            for node in self._walk(application):
                if (node.getRoleName() in ("list item", "heading")
                        and node.getState().contains(self.atspi.STATE_FOCUSED)):
                    return node.getRoleName(), node.name
        return None
