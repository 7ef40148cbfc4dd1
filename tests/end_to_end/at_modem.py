"""A modem that answers AT commands on an abstract Unix socket, as ModemManager's test profiles find
it. What it answers is its state; a test moves the state."""
import re
import socket
import threading

ACCESS = {"GSM": 0, "UMTS": 2, "LTE": 7}


class AtModem:
    def __init__(self, name):
        self.name = name
        self.has_sim = True
        self.imsi, self.iccid = "001010123456789", "98000101214365870951"  # swapped halves
        self.operator = "26201"
        self.status = 0              # of +CREG: 0 none, 1 home, 2 searching, 3 denied, 5 roaming
        self.technology = "LTE"
        self.area, self.cell = 0x7D1, 0x1CEAD8F
        self.levels = {}             # of +CESQ, by column; absent: not known
        self.is_on = False
        self.dies_at = None          # a command within whose answer it hangs up
        self.commands = []
        self.connections = []
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind("\0abstract:" + name)
        self.listener.listen()
        threading.Thread(target=self._accept, daemon=True).start()

    def camp(self, technology, area, cell, status=1, operator="26201", **levels):
        """Another cell, told only to whoever asks."""
        self.technology, self.area, self.cell = technology, area, cell
        self.status, self.operator, self.levels = status, operator, levels

    def move(self, *cell, **levels):
        """Another cell, told at once as an unsolicited result."""
        self.camp(*cell, **levels)
        for kind in ("CREG", "CGREG", "CEREG"):
            self._say(f"+{kind}: {self._registration(kind)}")

    def pull_card(self):
        self.has_sim = False
        self._say("^SCKS: 0")

    def put_in_card(self, imsi, iccid):
        self.imsi, self.iccid, self.has_sim = imsi, iccid, True
        self._say("^SCKS: 1")

    def hang_up(self):
        """Closes its connections; whoever connects again is let in."""
        for connection in self.connections:
            try:
                connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
        self.connections = []

    def close(self):
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        self.hang_up()

    def _say(self, text):
        for connection in self.connections:
            try:
                connection.sendall(f"\r\n{text}\r\n".encode())
            except OSError:
                pass

    def _accept(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            self.connections.append(connection)
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        read = b""
        try:
            while data := connection.recv(4096):
                read += data
                while b"\r" in read:
                    line, read = read.split(b"\r", 1)
                    command = line.decode().strip()
                    if not command:
                        continue
                    self.commands.append(command)
                    answer = self._answer(command.removeprefix("AT")).encode()
                    if command == self.dies_at:
                        connection.sendall(answer[:answer.index(b"\r\nOK") // 2])
                        return self.hang_up()
                    connection.sendall(answer)
        except OSError:
            pass

    def _registration(self, kind):
        is_lte = self.technology == "LTE"
        status = self.status if (kind == "CEREG") == is_lte or self.status in (2, 3) else 0
        if status not in (1, 5):
            return str(status)
        return f'{status},"{self.area:04X}","{self.cell:08X}",{ACCESS[self.technology]}'

    def _levels(self):
        unknown = {"rxlev": 99, "ber": 99, "rscp": 255, "ecno": 255, "rsrq": 255, "rsrp": 255}
        return ",".join(str(self.levels.get(key, value)) for key, value in unknown.items())

    def _answer(self, command):
        for pattern, answer in ANSWERS:
            match = re.fullmatch(pattern, command)
            if match:
                lines = answer(self, match)
                return "".join(f"\r\n{line}\r\n" for line in lines)
        return "\r\nERROR\r\n"

    def _file(self, match):
        if not self.has_sim:
            return ["+CME ERROR: 10"]
        contents = {"12258": self.iccid, "28478": "01FFFFFF"}.get(match[2])
        return [f'+CRSM: 144,0,"{contents}"', "OK"] if contents else ["+CRSM: 106,130", "OK"]

    def _power(self, match):
        self.is_on = match[1] == "1"
        return ["OK"]

    def _card(self, *lines):
        return [*lines, "OK"] if self.has_sim else ["+CME ERROR: 10"]


def says(*lines):
    return lambda modem, match: [*lines, "OK"]


ANSWERS = [
    (r"|E0|V1|X4|&C1|Z|H|&D1|&F|\+CMEE=1|\+IFC=.*|\+CSCS=.*|\+CMER=.*|\+CGEREP=.*", says()),
    (r"\^SCKS=1|\\Q3", says()),  # of modems that tell when a card is pulled
    (r"\+C(REG|GREG|EREG)=\d", says()),
    (r"\+GCAP", says("+GCAP: +CGSM,+FCLASS")),
    (r"I", says("Emulated modem")),
    (r"\+(CGMI|GMI)", says("Quorin")),
    (r"\+(CGMM|GMM)", says("Emulated")),
    (r"\+(CGMR|GMR)", says("1")),
    (r"\+(CGSN|GSN)", says("490154203237518")),
    (r"\+WS46=\?", says("+WS46: (12,22,25,28,29)")),
    (r"\+CPIN\?", lambda modem, match: modem._card("+CPIN: READY")),
    (r"\+CIMI", lambda modem, match: modem._card(modem.imsi)),
    (r"\+CRSM=(176|192),(\d+).*", AtModem._file),
    (r"\+CFUN\?", lambda modem, match: [f"+CFUN: {1 if modem.is_on else 4}", "OK"]),
    (r"\+CFUN=(\d).*", AtModem._power),
    (r"\+C(REG|GREG|EREG)=\?", lambda modem, match: [f"+C{match[1]}: (0-2)", "OK"]),
    (r"\+(C\w*REG)\?", lambda modem, match: [
        f"+{match[1]}: 2,{modem._registration(match[1])}", "OK"]),
    (r"\+COPS=3,\d", says()),
    (r"\+COPS=0", says()),
    (r"\+COPS\?", lambda modem, match: [
        f'+COPS: 0,2,"{modem.operator}",{ACCESS[modem.technology]}' if modem.status in (1, 5)
        else "+COPS: 0", "OK"]),
    (r"\+CSQ", says("+CSQ: 20,99")),
    (r"\+CESQ=\?", says("+CESQ: (0-63,99),(0-7,99),(0-96,255),(0-49,255),(0-34,255),(0-97,255)")),
    (r"\+CESQ", lambda modem, match: [f"+CESQ: {modem._levels()}", "OK"]),
    (r"\+CSCS=\?", says('+CSCS: ("IRA","UCS2")')),
    (r"\+CGDCONT=\?", says('+CGDCONT: (1-4),"IP",,,(0),(0)')),
    (r"\+CGDCONT\?", says('+CGDCONT: 1,"IP","internet","",0,0')),
    (r"\+CGDCONT=.*|\+CGACT=.*", says()),
    (r"D\*99.*", lambda modem, match: ["CONNECT"]),
    (r"\+CGACT\?", says("+CGACT: 1,0")),
    (r"\+CLCK=.*", says("+CLCK: 0")),
]
