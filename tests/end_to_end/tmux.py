"""A real terminal, by tmux, with a shell in it."""
import os
import subprocess
import tempfile

from private_bus import wait_for


class Tmux:
    """One window; `environment` is the shell's."""
    def __init__(self, columns, rows, environment=None):
        self.commands = 0
        self.folder = tempfile.TemporaryDirectory()
        self.socket = os.path.join(self.folder.name, "tmux")
        environment = dict(environment or os.environ, LC_ALL="C.UTF-8", ENV="")
        environment.pop("TMUX", None)
        self.environment = environment
        settings = os.path.join(self.folder.name, "settings")
        with open(settings, "w") as file:
            file.write("set-option -g default-terminal screen-256color\n")
        self.call("-f", settings, "new-session", "-d", "-x", str(columns), "-y", str(rows),
                  "ulimit -c 0; exec sh")
        if not wait_for(lambda: self.screen()[0]):
            raise RuntimeError("no shell comes up")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.call("kill-server")
        self.folder.cleanup()

    def call(self, *arguments):
        return subprocess.run(["tmux", "-S", self.socket, *arguments], env=self.environment,
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout

    def keys(self, *keys):
        self.call("send-keys", *keys)

    def line(self, text):
        """Types a command line."""
        self.call("send-keys", "-l", text)
        self.keys("Enter")

    def run(self, command):
        """Types a command line whose end `ended` can wait for."""
        self.commands += 1
        self.line(f"clear; {command}; echo ended-{self.commands} $?")

    def ended(self, status, seconds=10):
        """Waits until the latest command ended with this status."""
        return self.has(f"ended-{self.commands} {status}", seconds)

    def screen(self):
        """Its rows, top first, without blanks at their ends."""
        return [row.rstrip() for row in self.call("capture-pane", "-p").split("\n")]

    def resize(self, columns, rows):
        self.call("resize-window", "-x", str(columns), "-y", str(rows))

    def has(self, text, seconds=10):
        """Waits until the screen shows the text."""
        return wait_for(lambda: any(text in row for row in self.screen()), seconds, 0.02)

    def says(self, format):
        return self.call("display-message", "-p", format).strip()
