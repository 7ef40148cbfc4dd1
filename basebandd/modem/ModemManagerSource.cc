#include "basebandd/modem/ModemManagerSource.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "basebandd/modem/bus_reading.h"

namespace quorin {

using modem::Readings;
using modem::Technology;

namespace {

constexpr char kService[] = "org.freedesktop.ModemManager1";
constexpr char kRoot[] = "/org/freedesktop/ModemManager1";
constexpr char kModem[] = "org.freedesktop.ModemManager1.Modem";
constexpr char kNetwork[] = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
constexpr char kSignal[] = "org.freedesktop.ModemManager1.Modem.Signal";
constexpr char kLocation[] = "org.freedesktop.ModemManager1.Modem.Location";
constexpr char kSim[] = "org.freedesktop.ModemManager1.Sim";
constexpr char kBearer[] = "org.freedesktop.ModemManager1.Bearer";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
constexpr char kObjectManager[] = "org.freedesktop.DBus.ObjectManager";

constexpr std::uint32_t kSignalSeconds = 2;
constexpr std::uint64_t kPollMicroseconds = 5'000'000;
constexpr std::int64_t kAreaSource = 1;  // 3GPP LAC and CI, without a position

// A modem's state, from what it must be to report.
constexpr std::int64_t kEnabled = 6;
struct StateName {
  std::int64_t state;
  std::string_view name;
};
constexpr StateName kStates[] = {
    {-1, "failed"},     {0, "in an unknown state"}, {1, "initialising"},  {2, "locked"},
    {3, "not enabled"}, {4, "being disabled"},      {5, "being enabled"}, {6, "enabled"},
    {7, "searching"},   {8, "registered"},          {9, "disconnecting"}, {10, "connecting"},
    {11, "connected"},
};

struct TechnologyName {
  Technology technology;
  std::string_view text;
};
constexpr TechnologyName kTechnologies[] = {
    {Technology::none, ""},
    {Technology::lte, ", on LTE"},
    {Technology::umts, ", on UMTS"},
    {Technology::gsm, ", on GSM"},
    {Technology::nrOnly, ", on NR, not represented"},
};

/// Which group of reports an interface's properties belong to.
struct InterfaceRow {
  const char* interface;
  modem::Groups groups;
};
constexpr InterfaceRow kInterfaces[] = {
    {kModem, modem::kNetworkGroup | modem::kBearerGroup},
    {kNetwork, modem::kNetworkGroup},
    {kSignal, modem::kSignalGroup},
    {kLocation, modem::kNetworkGroup},
    {kSim, modem::kSimGroup},
    {kBearer, modem::kBearerGroup},
};

/// Errors after which it is useless to ask again.
constexpr std::string_view kRefusals[] = {
    SD_BUS_ERROR_UNKNOWN_METHOD,
    SD_BUS_ERROR_UNKNOWN_INTERFACE,
    SD_BUS_ERROR_ACCESS_DENIED,
    "org.freedesktop.ModemManager1.Error.Core.Unsupported",
    "org.freedesktop.ModemManager1.Error.Core.Unauthorized",
};

std::string textAt(const Readings& readings, std::string_view key) {
  return modem::valueAt(readings, key, std::string());
}

std::int64_t numberAt(const Readings& readings, std::string_view key) {
  return modem::valueAt(readings, key, std::int64_t{0});
}

// The number at a path's end; what has none comes last.
unsigned long numberOf(const std::string& path) {
  unsigned long number = ~0UL;
  const std::size_t slash = path.rfind('/') + 1;
  (void)std::from_chars(path.data() + slash, path.data() + path.size(), number);
  return number;
}

// The object's paths, without the one that stands for none.
std::vector<std::string> pathsIn(const modem::Reading& list) {
  std::vector<std::string> paths;
  if (const auto* all = list.as<std::vector<modem::Reading>>())
    for (const modem::Reading& path : *all)
      if (const auto* text = path.as<std::string>(); text && *text != "/") paths.push_back(*text);
  return paths;
}

std::string errorOf(sd_bus_message* reply) {
  const sd_bus_error* error = sd_bus_message_get_error(reply);
  return error ? std::string(error->name) : "";
}

bool isRefusal(const std::string& error) {
  return std::ranges::find(kRefusals, error) != std::end(kRefusals);
}

// The system's, whatever bus the service itself is on.
bus::Connection openSystemBus(std::string& reason) {
  sd_bus* bus = nullptr;
  const int result = sd_bus_open_system(&bus);
  if (result < 0)
    reason = std::string("the system bus cannot be reached: ") + std::strerror(-result);
  return bus::Connection(result < 0 ? nullptr : bus);
}

}  // namespace

/// A call that waits for its answer.
struct ModemManagerSource::Call {
  ModemManagerSource& source;
  std::uint64_t generation;
  bool isLasting;  // whatever is followed meanwhile
  Answer answer;
};

ModemManagerSource::ModemManagerSource(sd_event* loop, std::string name)
    : _loop(loop), _name(std::move(name)) {
  sd_event_source* timer = nullptr;
  (void)sd_event_add_time_relative(_loop, &timer, CLOCK_MONOTONIC, kPollMicroseconds, 100'000,
                                   onTick, this);
  _timer.reset(timer);
  (void)sd_event_source_set_enabled(timer, SD_EVENT_ON);
  connect();
  note();
}

ModemManagerSource::~ModemManagerSource() = default;

void ModemManagerSource::connect() {
  _bus = openSystemBus(_reason);
  if (!_bus) return;
  (void)sd_bus_set_close_on_exit(_bus.get(), 0);
  const auto match = [&](const std::string& rule, sd_bus_message_handler_t handler) {
    return sd_bus_add_match_async(_bus.get(), nullptr, rule.c_str(), handler, nullptr, this);
  };
  const std::string fromService = std::string("type='signal',sender='") + kService + "',";
  const int results[] = {
      sd_bus_attach_event(_bus.get(), _loop, SD_EVENT_PRIORITY_NORMAL),
      match(std::string("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                        "arg0='") +
                kService + "'",
            onOwner),
      match(fromService + "interface='" + kObjectManager + "',member='InterfacesAdded'", onAdded),
      match(fromService + "interface='" + kObjectManager + "',member='InterfacesRemoved'",
            onRemoved),
      match(fromService + "interface='" + kProperties + "',member='PropertiesChanged'", onChanged),
  };
  if (*std::ranges::min_element(results) < 0) {
    _reason = "the system bus refuses to be listened to";
    _bus = nullptr;
    return;
  }
  start();
}

void ModemManagerSource::disconnect() {
  _bus = nullptr;
  _reason = "the system bus is lost";
  _owner.clear();
  _objects.clear();
  choose();
}

// The service's name, and all its modems.
void ModemManagerSource::start() {
  call(kRoot, kObjectManager, "GetManagedObjects", [this](sd_bus_message* reply) {
    if (sd_bus_message_is_method_error(reply, nullptr)) return;
    _owner = sd_bus_message_get_sender(reply);
    _objects.clear();
    for (const auto& [path, interfaces] : modem::readReadings(reply))
      if (const auto* held = interfaces.as<Readings>()) addObject(path, *held);
    choose();
  });
}

void ModemManagerSource::addObject(const std::string& path, const Readings& interfaces) {
  for (const auto& [interface, properties] : interfaces)
    if (const auto* held = properties.as<Readings>()) _objects[path][interface] = *held;
}

void ModemManagerSource::call(const std::string& path, const char* interface, const char* member,
                              Answer answer, const Append& append) {
  sd_bus_message* made = nullptr;
  int result =
      sd_bus_message_new_method_call(_bus.get(), &made, kService, path.c_str(), interface, member);
  const bus::Message owned(made);
  if (result >= 0 && append) result = append(made);
  if (result < 0) return;
  auto pending = std::make_unique<Call>(Call{*this, _generation, path == kRoot, std::move(answer)});
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(_bus.get(), &slot, made, onReply, pending.get(), 0) < 0) return;
  const bus::Slot held(slot);
  (void)pending.release();  // the slot owns it now
  (void)sd_bus_slot_set_destroy_callback(slot, [](void* call) { delete static_cast<Call*>(call); });
  (void)sd_bus_slot_set_floating(slot, 1);
}

int ModemManagerSource::onReply(sd_bus_message* message, void* call, sd_bus_error* /*error*/) {
  auto& pending = *static_cast<Call*>(call);
  if (pending.isLasting || pending.generation == pending.source._generation)
    pending.answer(message);
  return 1;
}

void ModemManagerSource::readAll(const std::string& path, const char* interface) {
  call(
      path, kProperties, "GetAll",
      [this, path, interface](sd_bus_message* reply) {
        if (sd_bus_message_is_method_error(reply, nullptr)) return;
        _objects[path][interface] = modem::readReadings(reply);
        refresh(modem::kSimGroup | modem::kBearerGroup);
      },
      [interface](sd_bus_message* asked) { return sd_bus_message_append(asked, "s", interface); });
}

const Readings& ModemManagerSource::of(const std::string& path, const char* interface) const {
  static const Readings kNothing;
  const auto object = _objects.find(path);
  if (object == _objects.end()) return kNothing;
  const auto found = object->second.find(interface);
  return found == object->second.end() ? kNothing : found->second;
}

std::vector<std::string> ModemManagerSource::modems() const {
  std::vector<std::string> paths;
  for (const auto& [path, interfaces] : _objects)
    if (interfaces.contains(kModem)) paths.push_back(path);
  std::ranges::sort(paths, {}, numberOf);
  return paths;
}

bool ModemManagerSource::isEnabled(const std::string& path) const {
  return numberAt(of(path, kModem), "State") >= kEnabled;
}

bool ModemManagerSource::isNamed(const std::string& path) const {
  const Readings& properties = of(path, kModem);
  return _name.empty() || _name == path || _name == std::to_string(numberOf(path)) ||
         _name == textAt(properties, "Device") || _name == textAt(properties, "Model");
}

// Whom it follows it goes on following, unless another one is enabled and that one is not.
void ModemManagerSource::choose() {
  std::string chosen;
  for (const std::string& path : modems()) {
    if (!isNamed(path)) continue;
    const auto rank = [&](const std::string& one) {
      return one.empty() ? 0 : 1 + 2 * isEnabled(one) + (one == _path);
    };
    if (rank(path) > rank(chosen)) chosen = path;
  }
  if (chosen != _path) follow(chosen);
  setUp();
  refresh(modem::kNetworkGroup);
}

void ModemManagerSource::follow(const std::string& path) {
  const bool isOther = !path.empty();
  _path = path;
  ++_generation;
  _isSetUp = _awaitsCells = false;
  _offersCells = true;
  _held.start();
  if (!isOther) return;
  _queue.start();
  readCardAndBearers();
}

// Once each time that the modem is enabled; what others asked for stays.
void ModemManagerSource::setUp() {
  const bool isReady = !_path.empty() && isEnabled(_path);
  if (!isReady || _isSetUp) {
    _isSetUp = isReady;
    return;
  }
  _isSetUp = true;
  const auto complain = [](const char* what) {
    return [what](sd_bus_message* reply) {
      if (const std::string error = errorOf(reply); !error.empty())
        systemLog(std::string("basebandd: the modem's service refuses ") + what + ": " + error);
    };
  };
  const std::int64_t rate = numberAt(followed(kSignal), "Rate");
  if (!followed(kSignal).empty() && (rate == 0 || rate > kSignalSeconds))
    call(_path, kSignal, "Setup", complain("signal updates"),
         [](sd_bus_message* asked) { return sd_bus_message_append(asked, "u", kSignalSeconds); });
  const Readings& location = followed(kLocation);
  const std::int64_t enabled = numberAt(location, "Enabled");
  if (numberAt(location, "Capabilities") & ~enabled & kAreaSource)
    call(_path, kLocation, "Setup", complain("area codes"), [&](sd_bus_message* asked) {
      return sd_bus_message_append(asked, "ub", static_cast<std::uint32_t>(enabled | kAreaSource),
                                   modem::valueAt(location, "SignalsLocation", false));
    });
  poll();
}

void ModemManagerSource::poll() {
  if (_path.empty() || !isEnabled(_path)) return;
  askForLocation();
  if (!_offersCells || _awaitsCells) return;
  _awaitsCells = true;
  call(_path, kModem, "GetCellInfo", [this](sd_bus_message* reply) {
    _awaitsCells = false;
    if (const std::string error = errorOf(reply); !error.empty()) {
      _offersCells = !isRefusal(error);
      if (!_offersCells) systemLog("basebandd: the modem gives no cell list: " + error);
      return;
    }
    std::vector<Readings> cells;
    const modem::Reading list = modem::readReading(reply);
    if (const auto* listed = list.as<std::vector<modem::Reading>>())
      for (const modem::Reading& cell : *listed)
        if (const auto* readings = cell.as<Readings>()) cells.push_back(*readings);
    _held.takeCells(std::move(cells));
    refresh(modem::kCellGroup);
  });
}

// The property is empty unless others asked for the location to be told to everyone.
void ModemManagerSource::askForLocation() {
  if (followed(kLocation).empty()) return;
  call(_path, kLocation, "GetLocation", [this](sd_bus_message* reply) {
    if (sd_bus_message_is_method_error(reply, nullptr)) return;
    _objects[_path][kLocation]["Location"] = {modem::readReadings(reply)};
    refresh(modem::kNetworkGroup);
  });
}

// Every connection may have a bearer object of its own: those that are gone are forgotten.
void ModemManagerSource::readCardAndBearers() {
  const Readings& properties = followed(kModem);
  const std::string sim = textAt(properties, "Sim");
  const std::vector<std::string> bearers = pathsIn(modem::at(properties, "Bearers"));
  std::erase_if(_objects, [&](const auto& object) {
    return !object.second.contains(kModem) && object.first != sim &&
           std::ranges::find(bearers, object.first) == bearers.end();
  });
  if (!sim.empty() && sim != "/") readAll(sim, kSim);
  for (const std::string& bearer : bearers) readAll(bearer, kBearer);
}

modem::ModemReadings ModemManagerSource::readings() const {
  if (_path.empty()) return {};
  modem::ModemReadings all;
  all.modem = followed(kModem);
  all.sim = of(textAt(all.modem, "Sim"), kSim);
  for (const std::string& bearer : pathsIn(modem::at(all.modem, "Bearers")))
    all.bearers.push_back(of(bearer, kBearer));
  if (!isEnabled(_path)) {
    all.modem.erase("AccessTechnologies");
    return all;
  }
  all.network = followed(kNetwork);
  all.signal = _held.signal(all.modem, followed(kSignal));
  const auto location = modem::valueAt(followed(kLocation), "Location", Readings{});
  all.area = modem::areaOf(textAt(location, std::to_string(kAreaSource)));
  all.cells = _held.cells();
  return all;
}

void ModemManagerSource::refresh(modem::Groups groups) {
  _queue.refresh(readings(), groups);
  note();
  if (!_queue.isEmpty() && _wake) _wake();
}

// What waits is due at once, however far a pause has put the service's time back.
std::optional<Milliseconds> ModemManagerSource::next() const {
  if (_queue.isEmpty()) return std::nullopt;
  return Milliseconds{0};
}

std::string ModemManagerSource::description() const {
  if (!_bus) return "live modem: " + _reason;
  if (_owner.empty()) return "live modem: there is no ModemManager on the system bus";
  if (_path.empty())
    return "live modem: ModemManager knows no modem" + (_name.empty() ? "" : " '" + _name + "'");
  const Readings& properties = followed(kModem);
  const auto state = modem::valueAt(properties, "State", std::int64_t{0});
  const auto* name = std::ranges::find(kStates, state, &StateName::state);
  const auto technology = modem::technologyOf(readings());
  const auto* on = std::ranges::find(kTechnologies, technology, &TechnologyName::technology);
  return "live modem " + std::to_string(numberOf(_path)) + " (" +
         textAt(properties, "Manufacturer") + " " + textAt(properties, "Model") + "), " +
         std::string(name == std::end(kStates) ? "in an unknown state" : name->name) +
         std::string(on->text);
}

// The log has each change once.
void ModemManagerSource::note() {
  std::string now = description();
  if (now == _noted) return;
  _noted = std::move(now);
  systemLog("basebandd: " + _noted);
}

// Anyone may send us a signal that looks like the service's.
bool ModemManagerSource::isFromService(sd_bus_message* message) const {
  const char* sender = sd_bus_message_get_sender(message);
  return sender && _owner == sender;
}

int ModemManagerSource::onOwner(sd_bus_message* message, void* source, sd_bus_error* /*error*/) {
  auto& self = *static_cast<ModemManagerSource*>(source);
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &after) < 0) return 0;
  self._owner = after;
  self._objects.clear();
  self.choose();
  if (!self._owner.empty()) self.start();
  return 0;
}

int ModemManagerSource::onAdded(sd_bus_message* message, void* source, sd_bus_error* /*error*/) {
  auto& self = *static_cast<ModemManagerSource*>(source);
  if (!self.isFromService(message)) return 0;
  const char* path = nullptr;
  if (sd_bus_message_read(message, "o", &path) < 0) return 0;
  self.addObject(path, modem::readReadings(message));
  self.choose();
  return 0;
}

int ModemManagerSource::onRemoved(sd_bus_message* message, void* source, sd_bus_error* /*error*/) {
  auto& self = *static_cast<ModemManagerSource*>(source);
  if (!self.isFromService(message)) return 0;
  const char* path = nullptr;
  if (sd_bus_message_read(message, "o", &path) < 0) return 0;
  const auto object = self._objects.find(path);
  if (object == self._objects.end()) return 0;
  const modem::Reading removed = modem::readReading(message);
  for (const modem::Reading& interface : removed.as<std::vector<modem::Reading>>()
                                             ? *removed.as<std::vector<modem::Reading>>()
                                             : std::vector<modem::Reading>{})
    if (const auto* name = interface.as<std::string>()) object->second.erase(*name);
  if (object->second.empty()) self._objects.erase(object);
  self.choose();
  return 0;
}

int ModemManagerSource::onChanged(sd_bus_message* message, void* source, sd_bus_error* /*error*/) {
  auto& self = *static_cast<ModemManagerSource*>(source);
  if (!self.isFromService(message)) return 0;
  const std::string path = sd_bus_message_get_path(message);
  const char* name = nullptr;
  if (sd_bus_message_read(message, "s", &name) < 0) return 0;
  const std::string interface = name;
  const Readings changed = modem::readReadings(message);
  const auto* row = std::ranges::find_if(
      kInterfaces, [&](const InterfaceRow& known) { return interface == known.interface; });
  const auto object = self._objects.find(path);
  if (row == std::end(kInterfaces) || object == self._objects.end()) return 0;
  for (const auto& [key, value] : changed) object->second[interface][key] = value;
  if (interface == kSignal && path == self._path) self._held.noteSignal();
  if (path == self._path && (changed.contains("Sim") || changed.contains("Bearers")))
    self.readCardAndBearers();
  if (changed.contains("State")) self.choose();
  if (path == self._path && (row->groups & modem::kNetworkGroup)) self.askForLocation();
  self.refresh(row->groups);
  return 0;
}

int ModemManagerSource::onTick(sd_event_source* timer, std::uint64_t /*time*/, void* source) {
  auto& self = *static_cast<ModemManagerSource*>(source);
  (void)sd_event_source_set_time_relative(timer, kPollMicroseconds);
  if (self._bus && sd_bus_is_open(self._bus.get()) <= 0) self.disconnect();
  if (!self._bus) self.connect();
  self.poll();
  self.refresh(0);
  return 0;
}

}  // namespace quorin
