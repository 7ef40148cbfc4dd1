"""A stand-in of ModemManager on a bus, for what no emulated AT modem offers: cell lists, static
bearers, several modems, NR. Its objects have the interfaces and types of ModemManager 1.20."""
from bus_object import BusObject, Fault

NAME, ROOT = "org.freedesktop.ModemManager1", "/org/freedesktop/ModemManager1"
MODEM = NAME + ".Modem"
NETWORK, SIGNAL, LOCATION = (f"{MODEM}.{name}" for name in ("Modem3gpp", "Signal", "Location"))
SIM, BEARER = NAME + ".Sim", NAME + ".Bearer"
PROPERTIES, OBJECTS = "org.freedesktop.DBus.Properties", "org.freedesktop.DBus.ObjectManager"
GSM, UMTS, LTE, NR = 1 << 1, 1 << 5, 1 << 14, 1 << 15
GSM_CELL, UMTS_CELL, LTE_CELL, NR_CELL = 2, 3, 5, 6


def modem(number, state=8, access=LTE, model="Stand-in"):
    """A modem's interfaces with their properties, as (type, value)."""
    return {
        MODEM: {"State": ("i", state), "AccessTechnologies": ("u", access),
                "CurrentCapabilities": ("u", 12), "SignalQuality": ("(ub)", (60, True)),
                "Manufacturer": ("s", "Quorin"), "Model": ("s", model),
                "Device": ("s", f"/sys/devices/modem{number}"), "Sim": ("o", "/"),
                "Bearers": ("ao", [])},
        NETWORK: {"RegistrationState": ("u", 1), "OperatorCode": ("s", "26201"),
                  "EpsUeModeOperation": ("u", 2)},
        SIGNAL: {"Rate": ("u", 0), "Lte": ("a{sv}", {}), "Umts": ("a{sv}", {}),
                 "Gsm": ("a{sv}", {}), "Nr5g": ("a{sv}", {})},
        LOCATION: {"Capabilities": ("u", 3), "Enabled": ("u", 2), "SignalsLocation": ("b", False),
                   "Location": ("a{uv}", {})},
    }


class ModemManager:
    def __init__(self, address):
        self.address, self.objects, self.cells, self.locations = address, {}, {}, {}
        self.refused = None  # the error that GetCellInfo gives
        self.bus = None

    def start(self):
        self.bus = BusObject(self.address, NAME, self._answer)

    def stop(self):
        self.bus.close()

    def path(self, number):
        return f"{ROOT}/Modem/{number}"

    def add(self, number, interfaces):
        self.objects[self.path(number)] = interfaces
        if self.bus:
            self.bus.signal(ROOT, OBJECTS, "InterfacesAdded", "oa{sa{sv}}", self.path(number),
                            interfaces)

    def remove(self, number):
        interfaces = self.objects.pop(self.path(number))
        self.bus.signal(ROOT, OBJECTS, "InterfacesRemoved", "oas", self.path(number),
                        list(interfaces))

    def change(self, path, interface, **properties):
        self.objects.setdefault(path, {}).setdefault(interface, {}).update(properties)
        self.bus.signal(path, PROPERTIES, "PropertiesChanged", "sa{sv}as", interface, properties,
                        [])

    def called(self, member):
        return [(path, values) for path, _, name, values in self.bus.calls if name == member]

    def _answer(self, path, interface, member, values):
        if member == "GetManagedObjects":
            return "a{oa{sa{sv}}}", {known: held for known, held in self.objects.items()
                                     if MODEM in held}
        held = self.objects.get(path)
        if held is None:
            raise Fault("org.freedesktop.DBus.Error.UnknownObject", path)
        if member == "GetAll":
            return "a{sv}", held.get(values[0], {})
        if member == "GetCellInfo":
            if self.refused:
                raise Fault(self.refused, "no cell list")
            return "aa{sv}", self.cells.get(path, [])
        if member == "GetLocation":
            return "a{uv}", {1: ("s", self.locations[path])} if path in self.locations else {}
        if member == "Setup":
            if interface == SIGNAL:
                self.change(path, SIGNAL, Rate=("u", values[0]))
            return ("",)
        raise Fault("org.freedesktop.DBus.Error.UnknownMethod", member)


def cell(kind, serving=False, **keys):
    """A cell of GetCellInfo: texts, whole numbers and levels by their Python types."""
    types = {str: "s", int: "u", float: "d"}
    return {"cell-type": ("u", kind), "serving": ("b", serving),
            **{key.replace("_", "-"): (types[type(value)], value) for key, value in keys.items()}}
