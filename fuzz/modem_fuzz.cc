#include "basebandd/modem/ReportQueue.h"
#include "basebandd/modem/bus_reading.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/promise.h"
#include "fuzz/support/wire_message.h"
#include "messages/catalogue.h"

namespace {

using namespace quorin;
using namespace quorin::modem;
using fuzz::promise;

/// A number that a field can have; what the modem says beyond that must stay absent.
struct Bound {
  std::string_view key;
  std::int64_t least;
  std::int64_t most;
};
// From 3GPP TS 36.331, 36.133, 25.133, 24.008 and 45.008; levels with the room that readings have.
constexpr Bound kBounds[] = {
    {"phy_cell_id", 0, 503},
    {"nbr_phys_cell_id", 0, 503},
    {"physical_cell_id", 0, 503},
    {"psc", 0, 511},
    {"cpich_sc", 0, 511},
    {"bsic", 0, 63},
    {"rxlev", 0, 63},
    {"cpich_rscp", 0, 91},
    {"cpich_ecn0", 0, 49},
    {"tracking_area_code", 1, 0xFFFD},
    {"lac", 1, 0xFFFD},
    {"cell_id", 0, 0xFFFFFFF},
    {"num_mnc_digits", 2, 3},
    {"mcc", 0, 999},
    {"mnc", 0, 999},
    {"sel_plmn_mcc", 0, 999},
    {"sel_plmn_mnc", 0, 999},
    {"nbr_rsrp", -160, -20},
    {"rsrp0", -160, -20},
    {"rsrq0", -40, 10},
    {"sinr0", -80, 120},
    {"rssi", -130, 0},
    {"idle_rxlev_dBm", -130, 0},
};

void checkBounds(const Dictionary& fields) {
  for (const auto& [key, value] : fields) {
    if (value.kind() == Value::Kind::dictionary) checkBounds(value.dictionary());
    if (value.kind() == Value::Kind::list)
      for (const Value& element : value.list())
        if (element.kind() == Value::Kind::dictionary) checkBounds(element.dictionary());
    const auto* bound = std::ranges::find(kBounds, key.text, &Bound::key);
    if (bound == std::end(kBounds) || !value.isInteger()) continue;
    promise(*value.integer() >= bound->least && *value.integer() <= bound->most,
            "a number lies where its quantity can", fields);
  }
}

/// The private connection that carries bodies to the reader, as the system's bus would.
class Carrier {
 public:
  Carrier() {
    fuzz::SocketPair pair;
    _socket = std::move(pair.ours);
    _connection = bus::openPeer(std::move(pair.theirs), /*server=*/false);
    promise(_connection != nullptr, "the connection can be made");
    (void)fuzz::writeAll(_socket.get(), fuzz::kWelcome);
    while (sd_bus_process(_connection.get(), nullptr) > 0) {
    }
  }

  /// Null where the bus refuses the message.
  [[nodiscard]] bus::Message message(std::string_view signature, std::string_view body) {
    const fuzz::MessageHeader header{
        SD_BUS_MESSAGE_SIGNAL, "/modem", "org.example.Modem", "Changed", {}, {}, signature};
    if (!fuzz::writeAll(_socket.get(), fuzz::wireMessage(header, ++_serial, body))) return nullptr;
    sd_bus_message* message = nullptr;
    while (sd_bus_process(_connection.get(), &message) > 0 && !message) {
    }
    return bus::Message(message);
  }

 private:
  bus::Descriptor _socket;
  bus::PeerConnection _connection;
  std::uint32_t _serial = 0;
};

std::vector<Readings> listOf(const Reading& reading) {
  std::vector<Readings> all;
  if (const auto* list = reading.as<std::vector<Reading>>())
    for (const Reading& element : *list)
      if (const auto* readings = element.as<Readings>()) all.push_back(*readings);
  return all;
}

/// Puts what one body says where it belongs; gives the groups that it refreshes.
Groups take(ModemReadings& readings, std::uint8_t part, sd_bus_message* message) {
  switch (part % 8) {
    case 0: readings.modem = readReadings(message); return kNetworkGroup;
    case 1: readings.network = readReadings(message); return kNetworkGroup;
    case 2: readings.signal = readReadings(message); return kSignalGroup;
    case 3: {
      const Reading text = readReading(message);
      const auto* location = text.as<std::string>();
      readings.area = areaOf(location ? *location : "");
      return kNetworkGroup;
    }
    case 4:
    case 5: readings.cells = listOf(readReading(message)); return kCellGroup;
    case 6: readings.sim = readReadings(message); return kSimGroup;
    default: readings.bearers = listOf(readReading(message)); return kBearerGroup;
  }
}
constexpr std::string_view kSignatures[] = {"a{sv}",  "a{sv}",  "a{sv}", "s",
                                            "aa{sv}", "aa{sv}", "a{sv}", "aa{sv}"};

class StandingClock final : public Clock {
 public:
  [[nodiscard]] Milliseconds uptime() const override { return Milliseconds(1); }
  [[nodiscard]] Milliseconds sinceEpoch() const override { return Milliseconds(1'700'000'000'000); }
};

}  // namespace

// What the modem's service answers, one body after the other: a part of the readings, or with the
// high bit a signature of its own, and the body.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static StandingClock clock;
  setCurrentClock(clock);
  fuzz::Input input(bytes, size);
  Carrier carrier;
  ModemReadings readings;
  ReportQueue queue;
  while (!input.empty()) {
    const std::uint8_t part = input.byte();
    const std::string ownSignature = part & 0x80 ? input.text() : std::string();
    const std::string body = input.text();
    const bus::Message message = carrier.message(
        ownSignature.empty() ? kSignatures[part % std::size(kSignatures)] : ownSignature, body);
    if (!message) return 0;
    if (ownSignature.empty() && (part & 0x78) == 0x78) queue.start();  // another modem
    const Groups refreshed = take(readings, part, message.get());
    queue.refresh(readings, refreshed);
    while (!queue.isEmpty())
      queue.give([](std::int64_t id, const Ref<Data>& payload) {
        const auto metric = catalogueRow(id)->table->make();
        promise(metric->initWithData(payload), "every metric decodes");
        checkBounds(metric->dictionaryRepresentation());
      });
    for (const Report& report : reports()) {
      const bool isGiven = report.make(readings, std::nullopt) != nullptr;
      const bool isLive = queue.standing(report.metricID).state == Standing::live;
      const bool isRefreshed = ((report.groups | report.measured) & refreshed) != 0;
      promise(isLive || !isGiven || !isRefreshed, "what the readings give is live");
    }
  }
  return 0;
}
