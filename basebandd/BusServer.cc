#include "basebandd/BusServer.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "messages/catalogue.h"
#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace quorin {

namespace {

/// Events between us and the kernel's buffer; beyond, the newest of each metric waits in the
/// service.
constexpr std::uint64_t kMostQueued = 16;

/// Metrics that the source gives in a row, so that clients are answered in between.
constexpr std::size_t kMostAtOnce = 256;

/// As many as one user may have connections to the system bus.
constexpr std::size_t kMostClients = 256;

/// A session's private connection. Nothing is read from it: a client that writes there, or closes
/// its end, has lost it.
class PeerChannel final : public EventChannel {
 public:
  PeerChannel(bus::PeerConnection connection, sd_event* loop)
      : _connection(std::move(connection)),
        _end(fcntl(sd_bus_get_fd(_connection.get()), F_DUPFD_CLOEXEC, 3)) {
    sd_event_source* input = nullptr;
    (void)sd_event_add_io(loop, &input, _end.get(), EPOLLIN, onInput, this);
    _input.reset(input);
  }

  [[nodiscard]] bool isReady() const override {
    std::uint64_t queued = 0;
    return _connection && sd_bus_is_open(_connection.get()) > 0 &&
           sd_bus_get_n_queued_write(_connection.get(), &queued) >= 0 && queued < kMostQueued;
  }

  void send(std::uint64_t sequence, const char* kind, const XpcRef& event) override {
    sd_bus_message* signal = nullptr;
    int result = sd_bus_message_new_signal(_connection.get(), &signal, bus::kPath,
                                           bus::kEventsInterface, bus::kEventSignal);
    const bus::Message owned(signal);
    if (result >= 0) result = sd_bus_message_append(signal, "ts", sequence, kind);
    if (result >= 0) result = bus::appendDictionary(signal, event.get());
    if (result >= 0) (void)sd_bus_send(_connection.get(), signal, nullptr);
  }

 private:
  // Until the greeting is over the connection reads for itself.
  static int onInput(sd_event_source* /*source*/, int fd, std::uint32_t /*events*/, void* channel) {
    auto& self = *static_cast<PeerChannel*>(channel);
    const bool isGreeting =
        sd_bus_is_open(self._connection.get()) > 0 && sd_bus_is_ready(self._connection.get()) <= 0;
    char first = 0;
    if (isGreeting || (recv(fd, &first, 1, MSG_PEEK) < 0 && errno == EAGAIN)) return 0;
    self._connection = nullptr;
    self._input = nullptr;
    self._end = bus::Descriptor();
    return 0;
  }

  bus::PeerConnection _connection;
  bus::Descriptor _end;
  bus::EventSource _input;
};

/// Takes the service's name. What a signal interrupts is asked again, and may have come true before.
int takeName(sd_bus* bus) {
  int result = 0;
  do result = sd_bus_request_name(bus, bus::kName, 0);
  while (result == -EINTR);
  return result == -EALREADY ? 0 : result;
}

struct Untrack {
  void operator()(sd_bus_track* track) const { sd_bus_track_unref(track); }
};

}  // namespace

/// What is known of one client, until it leaves the bus.
struct BusServer::Client {
  BusServer& server;
  std::string name;
  std::unique_ptr<sd_bus_track, Untrack> track;
};

BusServer::BusServer(sd_event* loop, std::unique_ptr<MetricSource> source)
    : _loop(loop), _source(std::move(source)) {
  _service.setIsStale([this](std::int64_t id) {
    const auto standing = _source->standing(id);
    return standing && standing->state == Standing::stale;
  });
}

BusServer::~BusServer() = default;

BusServer::Client* BusServer::client(sd_bus_message* call, std::string& reason) {
  const char* sender = sd_bus_message_get_sender(call);
  if (const auto known = _clients.find(sender); known != _clients.end()) return known->second.get();
  if (_clients.size() >= kMostClients)
    return reason = std::to_string(kMostClients) + " clients are served already", nullptr;
  auto made = std::make_unique<Client>(Client{*this, sender, nullptr});
  sd_bus_track* track = nullptr;
  int result = sd_bus_track_new(_bus.get(), &track, onClientGone, made.get());
  made->track.reset(track);
  // Fails for a caller that is gone already, and would not be seen to go.
  if (result >= 0) result = sd_bus_track_add_name(track, sender);
  if (result < 0) return reason = std::strerror(-result), nullptr;
  return (_clients[sender] = std::move(made)).get();
}

int BusServer::onClientGone(sd_bus_track* /*track*/, void* client) {
  auto& gone = *static_cast<Client*>(client);
  BusServer& server = gone.server;
  const std::string name = gone.name;
  server._service.sessionGone(name);
  server._clients.erase(name);
  return 0;
}

/// The interface's methods. Malformed calls are answered with an error and change nothing.
struct BusServer::Methods {
  using Call = int (*)(BusServer&, sd_bus_message*);

  template <Call call>
  static int run(sd_bus_message* message, void* server, sd_bus_error* /*error*/) {
    auto& self = *static_cast<BusServer*>(server);
    const int result = call(self, message);
    self.armTimer();
    return result;
  }

  static int perform(BusServer& self, sd_bus_message* message) {
    const char* command = nullptr;
    int result = sd_bus_message_read(message, "s", &command);
    if (result < 0) return result;
    std::string reason;
    const Client* caller = self.client(message, reason);
    if (!caller) return refuse(message, SD_BUS_ERROR_LIMITS_EXCEEDED, reason);
    const XpcRef input = bus::readDictionary(message, reason);
    const auto answer = input ? self._service.perform(caller->name, command, input)
                              : osmin::CommandResult{Service::kBadInput, "the input: " + reason};
    sd_bus_message* reply = nullptr;
    result = sd_bus_message_new_method_return(message, &reply);
    const bus::Message owned(reply);
    if (result >= 0)
      result = sd_bus_message_append(reply, "is", answer.status, answer.message.c_str());
    if (result >= 0) result = bus::appendDictionary(reply, nullptr);
    return result < 0 ? result : sd_bus_send(nullptr, reply, nullptr);
  }

  static int eventsOn(BusServer& self, sd_bus_message* message) {
    std::string reason;
    const Client* caller = self.client(message, reason);
    if (!caller) return refuse(message, SD_BUS_ERROR_LIMITS_EXCEEDED, reason);
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) < 0) return -errno;
    bus::Descriptor ours(ends[0]);
    const bus::Descriptor theirs(ends[1]);
    auto peer = bus::openPeer(std::move(ours), /*server=*/true);
    if (!peer) return -EIO;
    const int attached = sd_bus_attach_event(peer.get(), self._loop, SD_EVENT_PRIORITY_NORMAL);
    if (attached < 0) return attached;
    const int result = sd_bus_reply_method_return(message, "h", theirs.get());
    if (result < 0) return result;
    self._service.eventsOn(caller->name,
                           std::make_shared<PeerChannel>(std::move(peer), self._loop));
    return result;
  }

  static int eventsOff(BusServer& self, sd_bus_message* message) {
    self._service.eventsOff(sd_bus_message_get_sender(message));
    return sd_bus_reply_method_return(message, nullptr);
  }

  static int status(BusServer& self, sd_bus_message* message) {
    return sd_bus_reply_method_return(message, "s", self.status().c_str());
  }

  static int feed(BusServer& self, sd_bus_message* message) {
    std::string reason;
    const XpcRef event = bus::readDictionary(message, reason);
    if (!event) return refuse(message, SD_BUS_ERROR_INVALID_ARGS, "the event: " + reason);
    const xpc_object_t id = xpc_dictionary_get_value(event.get(), osmin::kKeyMetricID);
    const xpc_object_t payload = xpc_dictionary_get_value(event.get(), osmin::kKeyPayload);
    if (!id || xpc_get_type(id) != xpc_type_t::int64 || !payload ||
        xpc_get_type(payload) != xpc_type_t::data)
      return refuse(message, SD_BUS_ERROR_INVALID_ARGS,
                    "an event needs an integer kKeyMetricID and bytes as kKeyPayload");
    if (!self._service.takeMetric(xpc_int64_get_value(id), make<Data>(xpc_data_get_bytes(payload)),
                                  reason))
      return refuse(message, SD_BUS_ERROR_INVALID_ARGS, reason);
    return sd_bus_reply_method_return(message, nullptr);
  }

  // The source's time stands still while it is held.
  static int pause(BusServer& self, sd_bus_message* message) {
    self._heldAt = self.sourceTime();
    return sd_bus_reply_method_return(message, nullptr);
  }
  static int resume(BusServer& self, sd_bus_message* message) {
    self._behind = currentClock().uptime() - self.sourceTime();
    self._heldAt.reset();
    self._steps = 0;
    return sd_bus_reply_method_return(message, nullptr);
  }
  // The first steps are taken before the answer.
  static int step(BusServer& self, sd_bus_message* message) {
    std::uint32_t count = 0;
    const int result = sd_bus_message_read(message, "u", &count);
    if (result < 0) return result;
    if (!self._heldAt) return refuse(message, SD_BUS_ERROR_FAILED, "the source is not paused");
    self._steps += count;
    self.advance();
    return sd_bus_reply_method_return(message, nullptr);
  }

 private:
  static int refuse(sd_bus_message* message, const char* error, const std::string& reason) {
    return sd_bus_reply_method_errorf(message, error, "%s", reason.c_str());
  }
};

namespace {

constexpr std::uint64_t kOpenToAll = SD_BUS_VTABLE_UNPRIVILEGED;  // the bus policy keeps the door

}  // namespace

bool BusServer::start(std::string& reason) {
  using M = Methods;
  static const sd_bus_vtable kInterface[] = {
      SD_BUS_VTABLE_START(0),
      SD_BUS_METHOD(bus::kPerform, bus::kPerformTakes, bus::kPerformGives, M::run<M::perform>,
                    kOpenToAll),
      SD_BUS_METHOD(bus::kEventsOn, "", "h", M::run<M::eventsOn>, kOpenToAll),
      SD_BUS_METHOD(bus::kEventsOff, "", "", M::run<M::eventsOff>, kOpenToAll),
      SD_BUS_METHOD(bus::kStatus, "", "s", M::run<M::status>, kOpenToAll),
      SD_BUS_METHOD(bus::kFeed, "a{sv}", "", M::run<M::feed>, kOpenToAll),
      SD_BUS_METHOD(bus::kPause, "", "", M::run<M::pause>, kOpenToAll),
      SD_BUS_METHOD(bus::kResume, "", "", M::run<M::resume>, kOpenToAll),
      SD_BUS_METHOD(bus::kStep, "u", "", M::run<M::step>, kOpenToAll),
      SD_BUS_VTABLE_END,
  };
  _bus = bus::openBus(reason);
  if (!_bus) return false;
  sd_event_source* timer = nullptr;
  (void)sd_event_add_time(_loop, &timer, CLOCK_MONOTONIC, 0, 1000, onTime, this);
  _timer.reset(timer);
  // A source that always has more to give must not keep clients waiting.
  (void)sd_event_source_set_priority(timer, SD_EVENT_PRIORITY_IDLE);
  const int attached = std::min(sd_bus_attach_event(_bus.get(), _loop, SD_EVENT_PRIORITY_NORMAL),
                                sd_bus_set_exit_on_disconnect(_bus.get(), 1));
  const int added =
      sd_bus_add_object_vtable(_bus.get(), nullptr, bus::kPath, bus::kInterface, kInterface, this);
  const int watched = sd_event_add_post(_loop, nullptr, afterEach, this);
  int named = std::min({attached, added, watched});
  if (named >= 0) named = takeName(_bus.get());
  if (named < 0) {
    reason = std::string(bus::kName) + ": " +
             (named == -EEXIST ? "another service has this name" : std::strerror(-named));
    return false;
  }
  _source->setWake([this] { armTimer(); });
  armTimer();
  return true;
}

Milliseconds BusServer::sourceTime() const {
  return _heldAt.value_or(currentClock().uptime() - _behind);
}

void BusServer::advance() {
  const MetricSource::Sink take = [this](std::int64_t id, const Ref<Data>& payload) {
    std::string reason;
    if (!_service.takeMetric(id, payload, reason)) systemLog("basebandd: the source: " + reason);
  };
  if (!_heldAt) _source->advanceTo(sourceTime(), take, kMostAtOnce);
  for (std::size_t i = 0; _steps > 0 && _source->next() && i < kMostAtOnce; ++i, --_steps) {
    _heldAt = std::max(*_heldAt, *_source->next());
    _source->give(take);
  }
  _service.deliver();
}

void BusServer::armTimer() {
  auto next = _service.nextDelivery();
  if (const auto due = _source->next(); due && (!_heldAt || _steps > 0))
    next = std::min(next.value_or(Milliseconds::max()), _heldAt ? Milliseconds{0} : *due + _behind);
  if (!next) return (void)sd_event_source_set_enabled(_timer.get(), SD_EVENT_OFF);
  (void)sd_event_source_set_time(
      _timer.get(), static_cast<std::uint64_t>(std::chrono::microseconds(*next).count()));
  (void)sd_event_source_set_enabled(_timer.get(), SD_EVENT_ONESHOT);
}

int BusServer::onTime(sd_event_source* /*source*/, std::uint64_t /*time*/, void* server) {
  auto& self = *static_cast<BusServer*>(server);
  self.advance();
  self.armTimer();
  return 0;
}

// A channel may have room again.
int BusServer::afterEach(sd_event_source* /*source*/, void* server) {
  static_cast<BusServer*>(server)->_service.deliver();
  return 0;
}

std::string BusServer::status() const {
  using Json = nlohmann::ordered_json;
  Json sessions = Json::array();
  for (const SessionStatus& s : _service.sessions())
    sessions.push_back({{"name", s.name},
                        {"configured", s.configured},
                        {"events_on", s.eventsOn},
                        {"metrics", s.metrics},
                        {"sent", s.sent},
                        {"dropped", s.dropped},
                        {"waiting", s.waiting}});
  Json metrics = Json::array();
  for (const MetricStatus& m : _service.metrics()) {
    const CatalogueRow* row = catalogueRow(m.id);
    Json metric = {{"id", m.id},
                   {"class", row ? Json(std::string(row->table->name)) : Json()},
                   {"count", m.count},
                   {"age_ms", m.age.count()}};
    const auto standing = _source->standing(m.id);
    if (standing && standing->state == Standing::live) metric["standing"] = "live";
    if (standing && standing->state == Standing::stale) {
      metric["standing"] = "stale";
      metric["stale_ms"] = standing->age.count();
    }
    metrics.push_back(std::move(metric));
  }
  Json notOffered = Json::array();
  for (const CatalogueRow& row : catalogue())
    if (const auto standing = _source->standing(row.metricID);
        row.metricID != 0 && standing && standing->state == Standing::notOffered)
      notOffered.push_back(std::string(row.table->name));
  return Json{{"source", _source->description()},
              {"paused", _heldAt.has_value()},
              {"sessions", sessions},
              {"metrics", metrics},
              {"not_offered", notOffered}}
      .dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace quorin
