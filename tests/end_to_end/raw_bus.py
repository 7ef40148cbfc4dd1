"""A client of the bus that sends what it likes: any signature and values, and parts of messages."""
import os
import socket
import struct

ALIGNMENT = {"y": 1, "g": 1, "v": 1, "x": 8, "t": 8, "d": 8, "{": 8, "(": 8}  # others: 4
NUMBERS = {"y": "B", "b": "I", "i": "i", "u": "I", "x": "q", "t": "Q", "d": "d"}
SERVICE = {"path": "/org/brennic/BasebandManager1", "interface": "org.brennic.BasebandManager1",
           "destination": "org.brennic.BasebandManager1"}
BUS = {"path": "/org/freedesktop/DBus", "interface": "org.freedesktop.DBus",
       "destination": "org.freedesktop.DBus"}
FIELDS = {"path": (1, "o"), "interface": (2, "s"), "member": (3, "s"), "destination": (6, "s"),
          "sender": (7, "s"), "signature": (8, "g")}
RETURN, ERROR = 2, 3


def first_type(signature):
    """The first complete type of a signature."""
    if signature[0] == "a":
        return "a" + first_type(signature[1:])
    depth = 0
    for length, letter in enumerate(signature, start=1):
        depth += (letter in "({") - (letter in ")}")
        if depth == 0:
            return signature[:length]
    raise ValueError(f"{signature} ends within a type")


def pad(out, alignment):
    out.extend(bytes(-len(out) % alignment))


def write(out, signature, *values):
    """Appends the values. A variant is (signature, value); bytes may stand for "ay"."""
    for value in values:
        kind = first_type(signature)
        signature = signature[len(kind):]
        pad(out, ALIGNMENT.get(kind[0], 4))
        if kind in NUMBERS:
            out += struct.pack("<" + NUMBERS[kind], value)
        elif kind in "so":
            out += struct.pack("<I", len(value.encode())) + value.encode() + b"\0"
        elif kind == "g":
            out += bytes([len(value)]) + value.encode() + b"\0"
        elif kind == "v":
            write(out, "g", value[0])
            write(out, *value)
        elif kind[0] in "({":
            write(out, kind[1:-1], *value)
        else:
            at = len(out)
            out += bytes(4)
            pad(out, ALIGNMENT.get(kind[1], 4))
            start = len(out)
            if kind == "ay" and isinstance(value, bytes):
                out += value
            else:
                for item in value.items() if isinstance(value, dict) else value:
                    write(out, kind[1:], item)
            out[at:at + 4] = struct.pack("<I", len(out) - start)


def call(serial, member, signature="", *values, **fields):
    """One method call to the service, as bytes; `fields` replace header fields, None leaves one out."""
    body = bytearray()
    write(body, signature, *values)
    header = bytearray(struct.pack("<cBBBII", b"l", 1, 0, 1, len(body), serial))
    present = {**SERVICE, "member": member, **({"signature": signature} if signature else {}), **fields}
    write(header, "a(yv)", [(FIELDS[name][0], (FIELDS[name][1], value))
                            for name, value in present.items() if value is not None])
    pad(header, 8)
    return bytes(header + body)


class RawBus:
    def __init__(self, address):
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.socket.settimeout(30)
        self.socket.connect(address.removeprefix("unix:path="))
        self.descriptors, self._read, self._serial = [], b"", 0
        self.socket.sendall(b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() +
                            b"\r\nNEGOTIATE_UNIX_FD\r\nBEGIN\r\n")
        while self._read.count(b"\r\n") < 2:
            self._receive()
        self._read = b""
        self.answers(self.send("Hello", **BUS))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()
        for descriptor in self.descriptors:
            os.close(descriptor)

    def send(self, member, signature="", *values, **fields):
        """Sends a call; gives its serial number."""
        return self.send_made(call(0, member, signature, *values, **fields))

    def send_made(self, message):
        """Sends what `call` made; gives its serial number."""
        self._serial += 1
        self.socket.sendall(message[:8] + struct.pack("<I", self._serial) + message[12:])
        return self._serial

    def answers(self, *serials):
        """The answers to these calls, by serial number: (RETURN or ERROR, body)."""
        answers, missing = {}, set(serials)
        while missing:
            while not (message := self._next()):
                self._receive()
            kind, to, body = message
            if kind in (RETURN, ERROR) and to in missing:
                answers[to] = (kind, body)
                missing.discard(to)
        return answers

    def call(self, member, signature="", *values, **fields):
        serial = self.send(member, signature, *values, **fields)
        return self.answers(serial)[serial]

    def _receive(self):
        data, descriptors, _, _ = socket.recv_fds(self.socket, 1 << 16, 8)
        if not data:
            raise ConnectionError("the bus closed the connection")
        self._read += data
        self.descriptors += descriptors

    def _next(self):
        if len(self._read) < 16:
            return None
        kind, = struct.unpack_from("<B", self._read, 1)
        body, _, fields = struct.unpack_from("<III", self._read, 4)
        start = 16 + fields + -fields % 8
        if len(self._read) < start + body:
            return None
        header, content = self._read[16:start], self._read[start:start + body]
        self._read = self._read[start + body:]
        at = header.find(b"\x05\x01u\0")  # the serial number that is answered
        return kind, struct.unpack_from("<I", header, at + 4)[0] if at >= 0 else 0, content
