"""access_test.py BIN RECORDING: who gets at the service on a system bus: Debian's own configuration
with the packages' policies, the service as its user, one user of the group and one outside it."""
import ctypes
import json
import os
import pathlib
import re
import select
import subprocess
import sys
import threading
import traceback

import private_mounts

if not private_mounts.enter():
    print("left out: it takes root and mounts of one's own")
    sys.exit(private_mounts.SKIPPED)

from checks import check, run
from private_bus import listens_at, wait_for
from raw_bus import BUS, ERROR, RETURN, SERVICE, RawBus, call

SOURCE = pathlib.Path(__file__).parents[2]
BIN, RECORDING = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
ADDRESS = "unix:path=/run/dbus/system_bus_socket"
NAME = SERVICE["destination"]
USERS = {"messagebus": 61000, "basebandd": 61001, "insider": 61002, "outsider": 61003}
GROUP = 61010
PROGRAMS = pathlib.Path("/mnt")
CONFIGURATION = ("kCommandAddConfiguration", {
    "kKeyAppID": ("x", 2), "kKeyPayloadType": ("x", 0),
    "kKeyPayload": ("ay", b'[metrics]\nK_CELLULAR_MM_INFO = "on change"\n')})
EVENT = {"kKeyMetricID": ("x", 3952132), "kKeyPayload": ("ay", b"\x08\x01")}
PROPERTIES = "org.freedesktop.DBus.Properties"

# Every way to call the service. (member, signature, values..., header fields)
CALLS = [(member, signature, values, fields)
         for member, signature, *values in [
             ("Perform", "sa{sv}", *CONFIGURATION), ("EventsOn", ""), ("EventsOff", ""),
             ("Status", ""), ("Feed", "a{sv}", EVENT), ("Pause", ""), ("Step", "u", 1),
             ("Resume", "")]
         for fields in ({}, {"interface": None})]
CALLS += [
    ("GetAll", "s", [NAME], {"interface": PROPERTIES}),
    ("Introspect", "", [], {"interface": "org.freedesktop.DBus.Introspectable"}),
    ("Introspect", "", [], {"interface": "org.freedesktop.DBus.Introspectable", "path": "/"}),
    ("Ping", "", [], {"interface": "org.freedesktop.DBus.Peer"}),
    ("GetMachineId", "", [], {"interface": "org.freedesktop.DBus.Peer"}),
]
# What the bus refuses to users.
LISTENING = [
    ("BecomeMonitor", "asu", [[], 0], {"interface": "org.freedesktop.DBus.Monitoring"}),
    ("BecomeMonitor", "asu", [[f"destination='{NAME}'"], 0],
     {"interface": "org.freedesktop.DBus.Monitoring"}),
    ("RequestName", "su", [NAME, 0], {}), ("RequestName", "su", [NAME, 2], {}),
    *(("AddMatch", "s", ["eavesdrop='true'" + match], {})
      for match in ("", ",type='method_return'", f",destination='{NAME}'", f",sender='{NAME}'"))]
# What it lets everyone ask for; what comes of it is looked at.
MATCHES = ["", "type='signal'", "type='method_call'", "type='method_return'",
           f"type='signal',sender='{NAME}'", "type='signal',member='Event'"]


def user_in_the_system(name, groups=()):
    number = USERS[name]
    return f"{name}:x:{number}:{number}::/nonexistent:/usr/sbin/nologin\n", \
        f"{name}:x:{number}:\n" + "".join(f"{group}:x:{GROUP}:{name}\n" for group in groups)


def make_the_system():
    """Users, groups, policies and programs as where the packages are, for this process only."""
    private_mounts.lay_folder(PROGRAMS, [BIN / "basebandd", BIN / "metricctl", RECORDING])
    users, groups = zip(*(user_in_the_system(name, ["baseband"] if name == "insider" else [])
                          for name in USERS))
    for file, lines in (("/etc/passwd", users), ("/etc/group", groups)):
        made = PROGRAMS / pathlib.Path(file).name
        others = [line for line in open(file)
                  if line.split(":")[0] not in {*USERS, "baseband"}]
        made.write_text("".join([*others, *lines]))
        private_mounts.lay(file, made)
    private_mounts.lay_folder("/etc/dbus-1/system.d",
                              sorted((SOURCE / "packaging").glob("org.*.conf")))
    private_mounts.lay_folder("/run")
    pathlib.Path("/run/dbus").mkdir()


def become(name):
    os.initgroups(name, USERS[name])
    os.setresgid(*[USERS[name]] * 3)
    os.setresuid(*[USERS[name]] * 3)


def as_user(name, work):
    """What `work` gives in a process of this user."""
    reading, writing = os.pipe()
    child = os.fork()
    if child == 0:
        try:
            become(name)
            os.write(writing, json.dumps(work()).encode())
        except BaseException:
            traceback.print_exc()
            os._exit(1)
        os._exit(0)
    os.close(writing)
    with open(reading) as answer:
        text = answer.read()
    os.waitpid(child, 0)
    return json.loads(text) if text else None


class SystemBus:
    def __init__(self):
        self.processes = []
        self.start(["dbus-daemon", "--system", "--nofork", "--nopidfile", "--nosyslog"])
        if not wait_for(lambda: listens_at("/run/dbus/system_bus_socket")):
            raise RuntimeError("no system bus")
        self.service = self.start([str(PROGRAMS / "basebandd"), "--source", "replay", "--recording",
                                   str(PROGRAMS / RECORDING.name), "--speed", "100", "--loop"],
                                  "basebandd")
        check("the service of its user comes up",
              wait_for(lambda: as_user("insider", lambda: self.metricctl("status"))[0] == 0))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.kill()
            process.wait()
        pathlib.Path("/run/dbus/system_bus_socket").unlink(missing_ok=True)

    def start(self, command, user=None, **options):
        process = subprocess.Popen(command, preexec_fn=user and (lambda: become(user)),
                                   cwd="/", stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    @staticmethod
    def metricctl(*arguments):
        ended = subprocess.run([str(PROGRAMS / "metricctl"), *arguments], text=True, cwd="/",
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)
        return ended.returncode, ended.stdout, ended.stderr

    def sessions(self):
        return json.loads(self.metricctl("status", "--json")[1])


def made_call(row, destination=NAME):
    member, signature, values, fields = row
    header = {"destination": destination, **fields}
    return call(0, member, signature, *values, **header)


def kinds_of(rows, destination=NAME):
    """The answer to each call: its kind, and its text."""
    with RawBus(ADDRESS) as bus:
        serials = [bus.send_made(made_call(row, destination)) for row in rows]
        answers = bus.answers(*serials)
        return [(answers[serial][0], answers[serial][1].decode("latin-1"), len(bus.descriptors))
                for serial in serials]


def unique_name_of_the_service():
    with RawBus(ADDRESS) as bus:
        return bus.call("GetNameOwner", "s", NAME, **BUS)[1][4:].decode().rstrip("\0")


def the_insider_is_served():
    with SystemBus() as bus:
        answers = as_user("insider", lambda: kinds_of(CALLS[:-1]))
        for row, (kind, text, _) in zip(CALLS, answers):
            check(f"the insider's {row[0]} is answered: {text}",
                  kind == RETURN or "AccessDenied" not in text and "rejected" not in text)
        check("a private connection is handed over", answers[-1][2] > 0)
        code, out, _ = as_user("insider", lambda: bus.metricctl("watch", "--count", "50", "--json"))
        check("and events come, identities among them", code == 0 and '"imsi":' in out)
        check("root is let in, too", bus.metricctl("status")[0] == 0)


def the_outsider_is_not():
    with SystemBus() as bus:
        before = bus.sessions()
        name = unique_name_of_the_service()
        for destination in (NAME, name):
            answers = as_user("outsider", lambda: kinds_of(CALLS, destination))
            check("every call is answered", len(answers) == len(CALLS))
            for row, (kind, text, descriptors) in zip(CALLS, answers):
                check(f"the outsider's {row} to {destination} is refused by the bus: {text}",
                      kind == ERROR and "Rejected send message" in text and descriptors == 0)
        for command in (["status"], ["watch", "--count", "1"], ["pause"],
                        ["record", "/dev/null", "--count", "1"]):
            code, out, error = as_user("outsider", lambda: bus.metricctl(*command))
            check(f"metricctl {command} says so in a line: {error}", code == 2 and out == ""
                  and error.startswith("metricctl: ") and error.count("\n") == 1)
        after = bus.sessions()
        check("nothing of it arrives", after["paused"] is False
              and len(after["sessions"]) == len(before["sessions"]) == 0)


def nobody_but_the_service_has_its_name_or_listens_in():
    with SystemBus() as bus:
        for service in (True, False):
            for user in ("insider", "outsider"):
                for row, (kind, text, _) in zip(LISTENING, as_user(user, lambda: kinds_of(
                        [(*row[:3], {**BUS, **row[3]}) for row in LISTENING]))):
                    check(f"{row} of the {user} is refused, service or none: {text}",
                          kind == ERROR)
            bus.service.kill()
            bus.service.wait()


def listened(ready, end):
    """What reaches a connection that asks for everything, from `ready` to `end`: two pipes."""
    with RawBus(ADDRESS) as ear:
        for match in MATCHES:
            ear.call("AddMatch", "s", match, **BUS)
        heard = b""
        os.write(ready, b"x")
        while end not in select.select([ear.socket, end], [], [])[0]:
            heard += ear.socket.recv(1 << 16)
        while select.select([ear.socket], [], [], 0.2)[0]:
            heard += ear.socket.recv(1 << 16)
        return heard.hex()


def the_outsider_overhears_nothing():
    with SystemBus() as bus:
        (ready, is_ready), (end, ends), heard = os.pipe(), os.pipe(), []
        ear = threading.Thread(target=lambda: heard.append(
            as_user("outsider", lambda: listened(is_ready, end))))
        ear.start()
        os.read(ready, 1)
        code, out, _ = as_user("insider",
                               lambda: bus.metricctl("watch", "--count", "50", "--json"))
        as_user("insider", lambda: kinds_of(CALLS))
        os.write(ends, b"x")
        ear.join()
        for descriptor in (ready, is_ready, end, ends):
            os.close(descriptor)
        check("the insider is served meanwhile", code == 0 and '"imsi":' in out)
        heard = bytes.fromhex(heard[0])
        members = set(re.findall(rb"\x03\x01s\0.\0\0\0(\w+)", heard, re.S))
        check(f"the outsider hears who comes and goes, as anybody may, and nothing else: {members}",
              members == {b"NameOwnerChanged"})


PTRACE_ATTACH, PIDFD_OPEN, PIDFD_GETFD = 16, 434, 438


def reached(process):
    """Which ways into another process are open."""
    libc = ctypes.CDLL(None, use_errno=True)
    folder, into = pathlib.Path("/proc", str(process)), []

    def attempt(name, way):
        try:
            if way():
                into.append(name)
        except OSError:
            pass

    attempt("fd", lambda: list((folder / "fd").iterdir()) is not None)
    for number in range(32):
        attempt(f"fd/{number}", lambda: os.open(folder / "fd" / str(number), os.O_RDONLY) >= 0)
        attempt(f"readlink fd/{number}", lambda: os.readlink(folder / "fd" / str(number)))
    for name in ("mem", "environ", "maps", "auxv", "stack", "syscall", "io"):
        attempt(name, lambda: os.open(folder / name, os.O_RDONLY) >= 0)
    for name in ("cwd", "root", "exe"):
        attempt(name, lambda: os.readlink(folder / name))
    attempt("map_files", lambda: list((folder / "map_files").iterdir()) is not None)
    attempt("ptrace", lambda: libc.ptrace(PTRACE_ATTACH, process, 0, 0) == 0)
    pidfd = libc.syscall(PIDFD_OPEN, process, 0)
    for number in range(32):
        attempt(f"pidfd {number}", lambda: libc.syscall(PIDFD_GETFD, pidfd, number, 0) >= 0)
    buffer = ctypes.create_string_buffer(8)
    vector = (ctypes.c_void_p * 2)(ctypes.addressof(buffer), 8)
    attempt("process_vm_readv",
            lambda: libc.process_vm_readv(process, vector, 1, vector, 1, 0) > 0)
    attempt("signal", lambda: os.kill(process, 0) is None)
    return into


def named_sockets_of(process):
    """The names of a process's sockets, by which one could connect to it."""
    inodes = set()
    for descriptor in pathlib.Path("/proc", str(process), "fd").iterdir():
        inodes.update(re.findall(r"socket:\[(\d+)\]", os.readlink(descriptor)))
    rows = [line.split() for line in open(f"/proc/{process}/net/unix")][1:]
    return [row[7] for row in rows if row[6] in inodes and len(row) > 7], len(inodes)


def no_process_is_entered_by_another_user():
    with SystemBus() as bus:
        watch = bus.start([str(PROGRAMS / "metricctl"), "watch", "--json"], "insider",
                          stdout=subprocess.DEVNULL)
        wait_for(lambda: any(session["sent"] for session in bus.sessions()["sessions"]))
        for whose, process, users in [("the service", bus.service, ("insider", "outsider")),
                                      ("the insider's client", watch, ("outsider", "basebandd"))]:
            for user in users:
                ways = as_user(user, lambda: reached(process.pid))
                check(f"{whose} is closed to the {user}: {ways}", ways == [])
            names, count = named_sockets_of(process.pid)
            check(f"{whose} has sockets, and none that one could connect to: {names}",
                  count > 1 and names == [])
        ways = as_user("insider", lambda: reached(watch.pid))
        check(f"these are ways in, where one may: {ways}",
              {"fd", "fd/2", "mem", "environ", "maps", "exe", "ptrace", "pidfd 2", "signal"}
              <= set(ways))


make_the_system()
run(the_insider_is_served, the_outsider_is_not,
    nobody_but_the_service_has_its_name_or_listens_in,
    the_outsider_overhears_nothing, no_process_is_entered_by_another_user)
