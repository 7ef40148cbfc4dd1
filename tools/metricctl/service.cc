#include "tools/metricctl/service.h"

#include <algorithm>
#include <csignal>
#include <cstring>

#include "messages/catalogue.h"
#include "metrics/registry/metric_ids.h"
#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace quorin::metricctl {

namespace {

constexpr std::int64_t kAppID = 2;

/// A metric by its constant's name or its class's; empty when there is none.
std::string_view constantOf(const std::string& metric) {
  for (const MetricID& row : kMetricIDs) {
    const CatalogueRow* known = catalogueRow(row.id);
    if (known && (row.name == metric || known->table->name == metric)) return row.name;
  }
  return {};
}

bool configurationFor(const std::vector<std::string>& metrics, std::string& text,
                      std::string& reason) {
  text = "[metrics]\n";
  const auto want = [&](std::string_view name) { text.append(name).append(" = \"on change\"\n"); };
  for (const std::string& metric : metrics) {
    const auto name = constantOf(metric);
    if (name.empty()) return reason = "there is no metric " + metric, false;
    want(name);
  }
  if (metrics.empty())
    for (const MetricID& row : kMetricIDs)
      if (catalogueRow(row.id)) want(row.name);
  return true;
}

XpcRef configureInput(const std::string& text) {
  XpcRef input(xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, xpc_object_t value) {
    xpc_dictionary_set_value(input.get(), key, XpcRef(value).get());
  };
  set(osmin::kKeyAppID, xpc_int64_create(kAppID));
  set(osmin::kKeyPayload, xpc_data_create(text.data(), text.size()));
  set(osmin::kKeyPayloadType, xpc_int64_create(0));
  return input;
}

WatchedEvent watched(std::uint64_t sequence, const XpcRef& event, Milliseconds arrival) {
  const xpc_object_t id = xpc_dictionary_get_value(event.get(), osmin::kKeyMetricID);
  const xpc_object_t payload = xpc_dictionary_get_value(event.get(), osmin::kKeyPayload);
  const bool bytes = payload && xpc_get_type(payload) == xpc_type_t::data;
  return {sequence, id && xpc_get_type(id) == xpc_type_t::int64 ? xpc_int64_get_value(id) : 0,
          make<Data>(bytes ? xpc_data_get_bytes(payload) : Bytes{}), arrival};
}

}  // namespace

bool watchService(const std::vector<std::string>& metrics,
                  const std::function<bool(const WatchedEvent&)>& take, std::string& reason) {
  std::string configuration;
  if (!configurationFor(metrics, configuration, reason)) return false;
  sd_event* made = nullptr;
  if (const int result = sd_event_new(&made); result < 0)
    return reason = std::strerror(-result), false;
  const bus::EventLoop loop(made);
  sigset_t signals;
  sigemptyset(&signals);
  for (int signal : {SIGTERM, SIGINT}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  for (int signal : {SIGTERM, SIGINT})
    (void)sd_event_add_signal(loop.get(), nullptr, signal, nullptr, nullptr);
  // The date when this began: a clock that is set later must not tear events apart.
  const Milliseconds start = currentClock().sinceEpoch() - currentClock().uptime();
  bus::Session session(loop.get(),
                       [&](std::uint64_t sequence, const std::string& kind, const XpcRef& event) {
                         if (kind == osmin::kEventMetric &&
                             !take(watched(sequence, event, start + currentClock().uptime())))
                           (void)sd_event_exit(loop.get(), 0);
                       });
  if (!session.connect(reason)) return false;
  const bus::Connection guard = bus::openBus(reason);
  if (!guard || sd_bus_attach_event(guard.get(), loop.get(), SD_EVENT_PRIORITY_NORMAL) < 0 ||
      sd_bus_set_exit_on_disconnect(guard.get(), 1) < 0)
    return false;
  session.perform(osmin::kCommandAddConfiguration, configureInput(configuration),
                  [&](const osmin::CommandResult& result) {
                    if (result.status == 0) return session.eventsOn();
                    reason = result.message;
                    (void)sd_event_exit(loop.get(), 1);
                  });
  if (sd_event_loop(loop.get()) == 0) return true;
  if (reason.empty()) reason = "the bus is gone";
  return false;
}

bus::Message callService(sd_bus* bus, const char* method, const Arguments& arguments,
                         std::string& reason) {
  sd_bus_message* call = nullptr;
  int result =
      sd_bus_message_new_method_call(bus, &call, bus::kName, bus::kPath, bus::kInterface, method);
  const bus::Message owned(call);
  if (result >= 0 && arguments) result = arguments(call);
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  if (result >= 0) result = sd_bus_call(bus, call, bus::kCommandMicroseconds, &error, &reply);
  if (result < 0)
    reason = error.message ? error.message : std::string("the bus: ") + std::strerror(-result);
  sd_bus_error_free(&error);
  return bus::Message(reply);
}

}  // namespace quorin::metricctl
