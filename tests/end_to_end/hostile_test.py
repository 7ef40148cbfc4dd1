"""hostile_test.py BIN RECORDING: clients that send nonsense and clients that leave in the middle, beside
one that behaves well, at the real service."""
import json
import os
import socket
import struct
import sys

from checks import check, run
from private_bus import PrivateBus, open_files, resident_kilobytes, wait_for
from raw_bus import ERROR, RawBus, call

BIN, RECORDING = sys.argv[1], sys.argv[2]
REPLAY = ["--source", "replay", "--recording", RECORDING]
MOST_GROWTH = 8 * 1024  # kB, as docs/service.md says
CALLS = 10_000


class WellBehaved:
    """A client that takes events to the end, and what became of them."""

    def __init__(self, bus):
        self.path = f"{bus.folder.name}/events"
        self.bus = bus
        self.process = bus.start([f"{BIN}/metricctl", "watch", "--json"], stdout=open(self.path, "w"))
        wait_for(lambda: len(self.sequence()) > 0)
        self.name = bus.status()["sessions"][0]["name"]

    def sequence(self):
        with open(self.path) as lines:
            return [json.loads(line)["seq"] for line in lines if line.endswith("\n")]

    def check_that_it_lost_nothing(self, than):
        before = len(self.sequence())
        check(f"events go on {than}", wait_for(lambda: len(self.sequence()) > before + 5))
        seen = self.sequence()
        check(f"the other client loses nothing {than}: {len(seen)} events to {seen[-1]}",
              self.process.poll() is None and seen == list(range(1, len(seen) + 1)))


def configuration(text, **keys):
    return ("kCommandAddConfiguration", {"kKeyAppID": ("x", 2), "kKeyPayload": ("ay", text),
                                         "kKeyPayloadType": ("x", 0), **keys})


def nested(depth):
    value = ("s", "x")
    for _ in range(depth):
        value = ("v", value)
    return value


# Every one is refused. (member, signature, values..., header fields)
MALFORMED = [("Perform", signature, values, {}) for signature, values in [
    ("", ()), ("s", ("x",)), ("sas", ("x", ["y"])), ("a{sv}s", ({}, "x")), ("sa{ss}", ("x", {"a": "b"})),
    ("sa{sv}s", ("x", {}, "y"))]]
MALFORMED += [("Perform", "sa{sv}", values, {}) for values in [
    ("", {}), ("kCommandNonsense", {}), ("x" * 100_000, {}), ("kCommandAddConfiguration", {}),
    ("kCommandClearConfiguration", {}), ("kCommandQueryMetric", {}),
    ("kCommandClearConfiguration", {"kKeyAppID": ("s", "2")}),
    ("kCommandClearConfiguration", {"kKeyAppID": ("i", 2)}),
    ("kCommandClearConfiguration", {"kKeyAppID": ("as", ["2"])}),
    ("kCommandClearConfiguration", {"kKeyAppID": ("(xs)", (2, "x"))}),
    ("kCommandClearConfiguration", {"kKeyAppID": nested(20)}),
    ("kCommandClearConfiguration", {"kKeyAppID": ("a{sv}", {"kKeyAppID": nested(20)})}),
    ("kCommandClearConfiguration", {f"key {i}": ("x", i) for i in range(100)}),
    ("kCommandQueryMetric", {"kKeyAppID": ("x", 2), "kKeyMetricID": ("s", "3952132")}),
    ("kCommandQueryMetric", {"kKeyAppID": ("x", 2), "kKeyMetricID": ("x", -1)}),
    ("kCommandQueryMetric", {"kKeyAppID": ("x", 2), "kKeyMetricID": ("x", 0)}),
    ("kCommandQueryMetric", {"kKeyAppID": ("x", 2), "kKeyMetricID": ("x", 0),
                             "kKeyTriggerID": ("x", -(1 << 63))}),
    configuration(b""), configuration(b"\xff\xfe\0"), configuration(b"[metrics]\nK_NONSENSE = 1\n"),
    configuration(b"[metrics]\nK_LTE_TX_POWER = 1\n"), configuration(b"[" * 5000),
    configuration(b"a" + b".a" * 900 + b" = 1\n"), configuration(b"x" * 5000 + b" = 1\n"),
    configuration(b"[metrics]\nK_LTE_TX_POWER = 1000\n", kKeyPayload=("s", "[metrics]")),
    configuration(b"[metrics]\nK_LTE_TX_POWER = 1000\n", kKeyPayloadType=("x", 1))]]
MALFORMED += [(member, signature, values, {}) for member, signature, values in [
    ("EventsOn", "s", ("x",)), ("EventsOff", "u", (1,)), ("Status", "s", ("x",)),
    ("Pause", "b", (1,)), ("Resume", "s", ("x",)), ("Step", "", ()), ("Step", "s", ("1",)),
    ("Step", "u", (0xFFFFFFFF,)), ("Nonsense", "", ()), ("n" * 255, "", ()), ("Feed", "", ()),
    ("Feed", "s", ("x",)), ("Feed", "a{sv}", ({},)),
    ("Feed", "a{sv}", ({"kKeyMetricID": ("x", 3952132)},)),
    ("Feed", "a{sv}", ({"kKeyMetricID": ("s", "3952132"), "kKeyPayload": ("ay", b"")},)),
    ("Feed", "a{sv}", ({"kKeyMetricID": ("x", 3952132), "kKeyPayload": ("s", "0801")},)),
    ("Feed", "a{sv}", ({"kKeyMetricID": ("x", 7), "kKeyPayload": ("ay", b"\x08\x01")},))]]
MALFORMED += [("Status", "", (), {"interface": "org.example.Nonsense"}),
              ("Status", "", (), {"path": "/org/example/Nonsense"}),
              ("Set", "ssv", ("org.brennic.BasebandManager1", "Paused", ("b", 1)),
               {"interface": "org.freedesktop.DBus.Properties"})]
# So large that a few of them do.
LARGE = [("Perform", "sa{sv}", values, {}) for values in [
    configuration(b"#" * 65_537), configuration(b"#" * 3_000_000), ("x" * 3_000_000, {}),
    configuration(b"a" + b".a" * 30_000 + b" = 1\n"),
    ("kCommandClearConfiguration", {"k" * 2_000_000: ("x", 2)}),
    ("kCommandClearConfiguration", {f"key {i}": ("s", "value") for i in range(20_000)})]]
LARGE += [("Feed", "a{sv}", ({"kKeyMetricID": ("x", 3952132), "kKeyPayload": ("ay", bytes(70_000))},), {})]


def ten_thousand_malformed_calls_change_nothing():
    with PrivateBus(BIN) as bus:
        service = bus.service(*REPLAY, "--speed", "10", "--loop")
        good = WellBehaved(bus)
        made = [(row, call(0, row[0], row[1], *row[2], **row[3])) for row in MALFORMED + LARGE]
        accepted, sent, before = set(), 0, 0
        with RawBus(bus.address) as hostile:
            def send(rows):
                nonlocal sent
                serials = {hostile.send_made(message): row for row, message in rows}
                sent += len(serials)
                for serial, (kind, body) in hostile.answers(*serials).items():
                    row = serials[serial]
                    if kind != ERROR and not (row[0] == "Perform" and struct.unpack_from("<i", body)[0] > 0):
                        accepted.add(str(row)[:200])
            for _ in range(3):
                send(made)
            before = resident_kilobytes(service)
            while sent < CALLS - len(LARGE):
                send(made[:len(MALFORMED)])
                # In another client's name: the bus replaces it, and that one's events stay on.
                hostile.call("EventsOff", sender=good.name)
            send(made[len(MALFORMED):])
            grown = resident_kilobytes(service) - before
        check(f"{sent} calls are sent", sent >= CALLS - len(LARGE))
        check(f"all are refused, and not: {accepted}", not accepted)
        check(f"the service's memory stays bounded: {grown} kB more", grown < MOST_GROWTH)
        good.check_that_it_lost_nothing("beside malformed calls")
        check("the service answers", service.poll() is None
              and [s["dropped"] for s in bus.status()["sessions"]] == [0])


PERFORM = ("Perform", "sa{sv}", "kCommandClearConfiguration", {"kKeyAppID": ("x", 2)})
GREETING = b"\0AUTH ANONYMOUS\r\nNEGOTIATE_UNIX_FD\r\nBEGIN\r\n"


def half_a_message(client):
    client.socket.sendall(call(9, *PERFORM)[:-9])


def no_wait_for_the_answer(client):
    client.send(*PERFORM)
    client.send("EventsOn")


def events_closed_at_once(client):
    client.call("EventsOn")
    os.close(client.descriptors.pop())
    client.call(*PERFORM)


def events_never_read(client):
    client.call(*PERFORM)
    client.call("EventsOn")
    client.call("EventsOn")


def half_a_message_on_the_private_connection(client):
    client.call("EventsOn")
    with socket.socket(fileno=client.descriptors.pop()) as private:
        private.settimeout(10)
        huge = call(1, "Nonsense", "ay", bytes(300_000))
        try:
            private.sendall(GREETING + struct.pack("<4sI", huge[:4], 100_000_000) + huge[8:])
            while private.recv(1 << 16):
                pass
        except (BrokenPipeError, ConnectionResetError):
            pass
        except TimeoutError:
            check("what is written on a private connection ends it", False)


def clients_that_leave_in_the_middle_cost_the_others_nothing():
    with PrivateBus(BIN) as bus:
        service = bus.service(*REPLAY, "--speed", "10", "--loop")
        good = WellBehaved(bus)
        ways = [half_a_message, no_wait_for_the_answer, events_closed_at_once, events_never_read,
                half_a_message_on_the_private_connection]
        files, before = open_files(service), 0
        for i in range(200):
            with RawBus(bus.address) as client:
                ways[i % len(ways)](client)
            if i == 20:
                before = resident_kilobytes(service)
        forgotten = wait_for(lambda: [s["name"] for s in bus.status()["sessions"]] == [good.name])
        check(f"clients that left are forgotten: {bus.status()['sessions']}", forgotten)
        check(f"their descriptors are closed: {open_files(service)} instead of {files}",
              wait_for(lambda: open_files(service) == files))
        grown = resident_kilobytes(service) - before
        check(f"the service's memory stays bounded: {grown} kB more", grown < MOST_GROWTH)
        good.check_that_it_lost_nothing("beside clients that leave")


def more_clients_than_are_served_are_told_so():
    with PrivateBus(BIN) as bus:
        bus.service(*REPLAY)
        clients = [RawBus(bus.address) for _ in range(257)]
        kinds = [client.call(*PERFORM)[0] for client in clients]
        check("the 257th is refused", kinds[:256] == [2] * 256 and kinds[256] == ERROR)
        for client in clients[:10]:
            client.socket.close()
        check("until one leaves", wait_for(lambda: clients[256].call(*PERFORM)[0] != ERROR))
        for client in clients[10:]:
            client.socket.close()


run(ten_thousand_malformed_calls_change_nothing,
    clients_that_leave_in_the_middle_cost_the_others_nothing,
    more_clients_than_are_served_are_told_so)
