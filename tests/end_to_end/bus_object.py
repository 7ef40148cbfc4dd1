"""Objects on a bus, for stand-ins of the services that ours calls: answers calls, sends signals."""
import socket
import struct
import threading

from raw_bus import ALIGNMENT, BUS, FIELDS, NUMBERS, RawBus, first_type, pad, write

CALL, RETURN, ERROR, SIGNAL = 1, 2, 3, 4
FIELDS_OUT = {**FIELDS, "error": (4, "s"), "reply": (5, "u")}
FIELD_NAMES = {1: "path", 2: "interface", 3: "member", 4: "error", 5: "reply", 6: "destination",
               7: "sender", 8: "signature", 9: "descriptors"}


class Reader:
    def __init__(self, data, at=0):
        self.data, self.at = data, at

    def align(self, alignment):
        self.at += -self.at % alignment

    def value(self, kind):
        self.align(ALIGNMENT.get(kind[0], 4))
        if kind in NUMBERS:
            code = "<" + NUMBERS[kind]
            number, = struct.unpack_from(code, self.data, self.at)
            self.at += struct.calcsize(code)
            return number
        if kind in "sog":
            length = self.data[self.at] if kind == "g" else self.value("u")
            self.at += kind == "g"
            text = self.data[self.at:self.at + length].decode()
            self.at += length + 1
            return text
        if kind == "v":
            return self.value(self.value("g"))
        if kind == "h":
            return self.value("u")
        if kind[0] in "({":
            return tuple(self.values(kind[1:-1]))
        length = self.value("u")
        self.align(ALIGNMENT.get(kind[1], 4))
        end, items = self.at + length, []
        while self.at < end:
            items.append(self.value(kind[1:]))
        return dict(items) if kind[1] == "{" else items

    def values(self, signature):
        values = []
        while signature:
            kind = first_type(signature)
            signature = signature[len(kind):]
            values.append(self.value(kind))
        return values


class Fault(Exception):
    """An answer that is an error: its name and its text."""


def message(kind, serial, signature, values, **fields):
    body = bytearray()
    write(body, signature, *values)
    header = bytearray(struct.pack("<cBBBII", b"l", kind, 0, 1, len(body), serial))
    present = {**fields, **({"signature": signature} if signature else {})}
    write(header, "a(yv)", [(FIELDS_OUT[name][0], (FIELDS_OUT[name][1], value))
                            for name, value in present.items()])
    pad(header, 8)
    return bytes(header + body)


class BusObject(RawBus):
    """Owns a name; `answer(path, interface, member, values)` gives (signature, values...) or raises
    Fault. Calls are answered on a thread of its own."""

    def __init__(self, address, name, answer):
        super().__init__(address)
        self.answer, self.name, self.lock = answer, name, threading.RLock()
        self.calls = []
        super().call("RequestName", "su", name, 4, **BUS)
        self.socket.settimeout(None)
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()

    def close(self):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.thread.join()
        self.socket.close()

    def signal(self, path, interface, member, signature="", *values):
        self._send(SIGNAL, signature, values, path=path, interface=interface, member=member)

    def _send(self, kind, signature, values, **fields):
        with self.lock:
            self._serial += 1
            self.socket.sendall(message(kind, self._serial, signature, values, **fields))

    def _serve(self):
        try:
            while True:
                while len(self._read) < 16:
                    self._receive()
                _, kind, flags, _, body, serial, fields = struct.unpack_from("<cBBBIII", self._read)
                start = 16 + fields + -fields % 8
                while len(self._read) < start + body:
                    self._receive()
                data, self._read = self._read[:start + body], self._read[start + body:]
                if kind != CALL:
                    continue
                header = {FIELD_NAMES[number]: value
                          for number, value in Reader(data, 12).value("a(yv)")}
                values = Reader(data[start:]).values(header.get("signature", ""))
                self._answer(header, serial, flags, values)
        except (OSError, ConnectionError):
            pass

    def _answer(self, header, serial, flags, values):
        to = {"destination": header["sender"], "reply": serial}
        self.calls.append((header["path"], header.get("interface", ""), header["member"], values))
        try:
            answer = self.answer(*self.calls[-1])
        except Fault as fault:
            return self._send(ERROR, "s", [fault.args[1]], error=fault.args[0], **to)
        if answer is not None and not flags & 1:
            self._send(RETURN, answer[0], answer[1:], **to)


AUTHORITY = "org.freedesktop.PolicyKit1"


def authority(address):
    """Lets everyone do everything, as far as it is asked."""
    def answer(path, interface, member, values):
        if member == "GetAll":
            return "a{sv}", {"BackendName": ("s", "stand-in"), "BackendVersion": ("s", "1"),
                             "BackendFeatures": ("u", 0)}
        if member == "CheckAuthorization":
            return "(bba{ss})", (True, False, {})
        raise Fault("org.freedesktop.DBus.Error.UnknownMethod", member)
    return BusObject(address, AUTHORITY, answer)
