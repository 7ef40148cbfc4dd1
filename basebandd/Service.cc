#include "basebandd/Service.h"

#include <algorithm>

#include "basebandd/excerpt.h"
#include "metrics/registry/metric_ids.h"

namespace quorin {

namespace {

XpcRef eventOf(std::int64_t id, const Ref<Data>& payload) {
  XpcRef event(xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, xpc_object_t value) {
    xpc_dictionary_set_value(event.get(), key, XpcRef(value).get());
  };
  set(osmin::kKeyMetricID, xpc_int64_create(id));
  set(osmin::kKeyPayload, xpc_data_create(payload->bytes().data(), payload->length()));
  set(osmin::kKeyProfileID, xpc_int64_create(0));
  return event;
}

std::optional<std::int64_t> integerUnder(const XpcRef& input, const char* key) {
  const xpc_object_t value = xpc_dictionary_get_value(input.get(), key);
  if (!value || xpc_get_type(value) != xpc_type_t::int64) return std::nullopt;
  return xpc_int64_get_value(value);
}

osmin::CommandResult badInput(const std::string& what) { return {Service::kBadInput, what}; }

}  // namespace

struct Service::Command {
  std::string_view name;
  osmin::CommandResult (Service::*run)(Session&, const XpcRef&);
};

osmin::CommandResult Service::perform(const std::string& session, std::string_view command,
                                      const XpcRef& input) {
  static constexpr Command kCommands[] = {
      {osmin::kCommandAddConfiguration, &Service::addConfiguration},
      {osmin::kCommandClearConfiguration, &Service::clearConfiguration},
      {osmin::kCommandQueryMetric, &Service::query},
  };
  const auto* row = std::ranges::find(kCommands, command, &Command::name);
  if (row == std::end(kCommands))
    return {kUnknownCommand, "there is no command " + excerpt(command)};
  if (!input || xpc_get_type(input.get()) != xpc_type_t::dictionary)
    return badInput("the input is no dictionary");
  if (!integerUnder(input, osmin::kKeyAppID)) return badInput("kKeyAppID is no integer");
  return (this->*row->run)(_sessions[session], input);
}

osmin::CommandResult Service::addConfiguration(Session& session, const XpcRef& input) {
  const xpc_object_t payload = xpc_dictionary_get_value(input.get(), osmin::kKeyPayload);
  if (!payload || xpc_get_type(payload) != xpc_type_t::data)
    return badInput("kKeyPayload holds no bytes");
  if (integerUnder(input, osmin::kKeyPayloadType) != 0) return badInput("kKeyPayloadType is not 0");
  std::string reason;
  auto config = readDeviceConfig(xpc_data_get_bytes(payload), reason);
  if (!config) return {kBadConfiguration, reason};
  session.config = std::move(*config);
  session.configured = true;
  return {0, ""};
}

osmin::CommandResult Service::clearConfiguration(Session& session, const XpcRef& /*input*/) {
  session.config.clear();
  session.configured = false;
  return {0, ""};
}

// A query whose metric ID is 0 asks for the tag in the low 16 bits of its trigger ID.
osmin::CommandResult Service::query(Session& session, const XpcRef& input) {
  auto id = integerUnder(input, osmin::kKeyMetricID);
  if (!id) return badInput("kKeyMetricID is no integer");
  if (*id == 0) {
    const auto trigger = integerUnder(input, osmin::kKeyTriggerID);
    if (!trigger) return badInput("kKeyTriggerID is no integer");
    id = kMetricIDPrefix + (*trigger & 0xffff);
  }
  const auto latest = _latest.find(*id);
  if (latest == _latest.end()) return {kNoValue, "the metric has no value yet"};
  if (isStale(*id)) return {kNoValue, "the metric's value is stale"};
  if (!session.channel) return {kNoValue, "events are off"};
  const Milliseconds now = currentClock().uptime();
  enqueue(session, *id, latest->second.event, now);
  flush(session, now);
  return {0, ""};
}

void Service::eventsOn(const std::string& name, std::shared_ptr<EventChannel> channel) {
  Session& session = _sessions[name];
  session.channel = std::move(channel);
  session.sequence = 0;
  session.waiting.clear();
  session.lastSent.clear();
  const Milliseconds now = currentClock().uptime();
  for (const auto& [id, period] : session.config)
    if (const auto latest = _latest.find(id); latest != _latest.end() && !isStale(id))
      enqueue(session, id, latest->second.event, now);
  flush(session, now);
}

void Service::eventsOff(const std::string& name) {
  const auto session = _sessions.find(name);
  if (session == _sessions.end()) return;
  session->second.channel = nullptr;
  session->second.waiting.clear();
}

bool Service::takeMetric(std::int64_t id, const Ref<Data>& payload, std::string& reason) {
  if (std::ranges::find(kMetricIDs, id, &MetricID::id) == std::end(kMetricIDs))
    return reason = "no metric has the ID " + std::to_string(id), false;
  if (payload->length() > kMostPayloadBytes)
    return reason = "a payload of more than 65536 bytes", false;
  const Milliseconds now = currentClock().uptime();
  Latest& latest = _latest[id];
  const bool changed = !areEqual(latest.payload, payload);
  latest.payload = payload;
  latest.event = eventOf(id, payload);
  latest.arrival = now;
  ++latest.count;
  for (auto& [name, session] : _sessions) {
    const auto wanted = session.config.find(id);
    if (!session.channel || wanted == session.config.end()) continue;
    if (!wanted->second && !changed) continue;
    const auto last = session.lastSent.find(id);
    const bool early = wanted->second && last != session.lastSent.end();
    enqueue(session, id, latest.event, early ? last->second + *wanted->second : now);
    flush(session, now);
  }
  return true;
}

void Service::enqueue(Session& session, std::int64_t id, const XpcRef& event, Milliseconds due) {
  const auto [waiting, isNew] = session.waiting.try_emplace(id);
  // What only waits for its period is replaced as asked; what waits for the channel is dropped.
  const bool held = !isNew && waiting->second.due > currentClock().uptime();
  if (!isNew && !held) ++session.dropped;
  const std::uint64_t sequence = held ? waiting->second.sequence : ++session.sequence;
  waiting->second = {sequence, event, held ? waiting->second.due : due};
}

void Service::flush(Session& session, Milliseconds now) {
  while (session.channel && session.channel->isReady()) {
    auto next = session.waiting.end();
    for (auto it = session.waiting.begin(); it != session.waiting.end(); ++it)
      if (it->second.due <= now &&
          (next == session.waiting.end() || it->second.sequence < next->second.sequence))
        next = it;
    if (next == session.waiting.end()) return;
    session.channel->send(next->second.sequence, osmin::kEventMetric, next->second.event);
    session.lastSent[next->first] = now;
    ++session.sent;
    session.waiting.erase(next);
  }
}

void Service::deliver() {
  for (auto& [name, session] : _sessions) flush(session, currentClock().uptime());
}

std::optional<Milliseconds> Service::nextDelivery() const {
  std::optional<Milliseconds> next;
  for (const auto& [name, session] : _sessions)
    for (const auto& [id, waiting] : session.waiting)
      if (session.channel && session.channel->isReady() && (!next || waiting.due < *next))
        next = waiting.due;
  return next;
}

std::vector<SessionStatus> Service::sessions() const {
  std::vector<SessionStatus> all;
  for (const auto& [name, session] : _sessions)
    all.push_back({name, session.configured, session.channel != nullptr, session.config.size(),
                   session.sent, session.dropped, session.waiting.size()});
  return all;
}

std::vector<MetricStatus> Service::metrics() const {
  std::vector<MetricStatus> all;
  for (const auto& [id, latest] : _latest)
    all.push_back({id, latest.count, currentClock().uptime() - latest.arrival});
  return all;
}

}  // namespace quorin
