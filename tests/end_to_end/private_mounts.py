"""A program whose mounts are its own: what it lays over /etc, /dev or /run nobody else sees. Takes
root; elsewhere the program goes on as it was started."""
import os
import pathlib
import shutil
import socket
import subprocess
import sys

MARK = "QUORIN_PRIVATE_MOUNTS"
SKIPPED = 77  # what ctest takes for a test that was left out


def enter():
    """Starts the program anew with mounts of its own, once. False: that is not possible here."""
    if MARK in os.environ:
        return os.environ[MARK] == "yes"
    command = ["unshare", "--mount", "--propagation", "private"]
    possible = (os.getuid() == 0 and shutil.which("unshare")
                and subprocess.run([*command, "true"], stderr=subprocess.DEVNULL).returncode == 0)
    os.environ[MARK] = "yes" if possible else "no"
    if possible:
        os.execvp(command[0], [*command, sys.executable, *sys.argv])
    return False


def lay(over, made, how="--bind"):
    subprocess.run(["mount", how, str(made), str(over)], check=True)


def lay_folder(over, content=()):
    """An empty folder in memory over one that is there, with these files or folders in it."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "private", str(over)], check=True)
    for path in content:
        shutil.copy(path, over)


def listen_as_system_logger():
    """Makes a /dev with a logger's socket on it; gives the socket."""
    made = pathlib.Path("/mnt")
    lay_folder(made)
    for name in ("null", "zero", "full", "random", "urandom", "tty"):
        (made / name).touch()
        lay(made / name, pathlib.Path("/dev", name))
    for name in ("pts", "shm"):
        (made / name).mkdir()
        lay(made / name, pathlib.Path("/dev", name))
    (made / "fd").symlink_to("/proc/self/fd")
    logger = _listening_at(made / "log")
    lay("/dev", made, "--rbind")
    return logger


def listen_again_as_system_logger():
    """Takes the place of the socket that `listen_as_system_logger` made; gives the new one."""
    os.unlink("/dev/log")
    return _listening_at("/dev/log")


def _listening_at(path):
    made = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    made.bind(str(path))
    return made
