#include "fuzz/support/application.h"

#include <cstdlib>
#include <map>

#include "fuzz/support/promise.h"
#include "metrics/metric_cases.h"

namespace quorin::fuzz {

namespace {

XpcRef integer(std::int64_t value) { return XpcRef(xpc_int64_create(value)); }
XpcRef text(const std::string& value) { return XpcRef(xpc_string_create(value)); }
XpcRef data(Bytes bytes) { return XpcRef(xpc_data_create(bytes.data(), bytes.size())); }

/// The client library: keeps the handlers, and answers every command with 0.
class Handlers final : public osmin::client::Manager {
 public:
  osmin::CommandResult perform(const std::string& /*command*/, xpc_object_t /*input*/,
                               xpc_object_t* /*output*/) override {
    return {0, ""};
  }
  void registerHandler(const std::string& event, osmin::EventHandler handler) override {
    _handlers[event] = std::move(handler);
  }
  void eventsOff() override {}
  void eventsOn() override {}

  void run(const std::string& kind, const XpcRef& event) const {
    _handlers.at(kind)(event.get(), nullptr);
  }

 private:
  std::map<std::string, osmin::EventHandler> _handlers;
};

class MovedClock final : public Clock {
 public:
  [[nodiscard]] Milliseconds uptime() const override { return now; }
  [[nodiscard]] Milliseconds sinceEpoch() const override { return now; }
  Milliseconds now{0};
};

/// Whether the store is meant to end the process over this event.
bool isFatal(const Dictionary& event) {
  const Value* entry = event.find(osmin::kKeyMetricID);
  const auto id = entry ? entry->integer() : std::nullopt;
  if (!id) return true;
  const MetricCase* row = metricCase(*id);
  const Value* payload = event.find(osmin::kKeyPayload);
  const bool hasBytes = payload && payload->kind() == Value::Kind::data;
  Dictionary store;
  return row && !row->message->decode(hasBytes ? payload->bytes() : kNoBytes, store);
}

/// Stands between the wrapper and the store, and gives the record's last reference back, which the
/// application is meant to keep.
class Door final : public OsminWrapperDelegate {
 public:
  void metricsDidUpdate(const EventRecord* metric) override {
    latest.event = metric ? metric->dictionary() : Dictionary();
    latest.isLeftOut = !metric || isFatal(latest.event);
    if (!latest.isLeftOut) MetricValidator::sharedInstance()->metricsDidUpdate(metric);
    if (metric) metric->release();
  }
  void eventsDidUpdate(const EventRecord* trigger) override {
    if (trigger) latest.event = trigger->dictionary();
    MetricValidator::sharedInstance()->eventsDidUpdate(trigger);
    if (trigger) trigger->release();
  }

  Application::Delivered latest;
};

struct Rig {
  MovedClock clock;
  std::shared_ptr<Handlers> handlers = std::make_shared<Handlers>();
  std::shared_ptr<Door> door = std::make_shared<Door>();
};
Rig& rig() {
  static auto& rig = *new Rig;
  return rig;
}

void runMainQueue() {
  while (dispatch_get_main_queue().runPending()) {
  }
}

}  // namespace

Event eventFrom(Input& input) {
  // How often each comes, out of sixteen.
  enum Shape : std::uint8_t { metric, noPayload, textPayload, anyID, noID, textID, trigger, null };
  constexpr Shape kShapes[] = {metric, metric, metric, metric, metric,    metric,
                               metric, metric, metric, metric, noPayload, textPayload,
                               anyID,  noID,   textID, trigger};
  const std::uint8_t first = input.byte();
  const Shape shape = first == 0xff ? null : kShapes[first % std::size(kShapes)];
  if (shape == null) return {osmin::kEventMetric, XpcRef(xpc_null_create())};
  const std::int64_t known = kMetricIDs[input.choice(std::size(kMetricIDs))].id;
  XpcRef object(xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, const XpcRef& value) {
    xpc_dictionary_set_value(object.get(), key, value.get());
  };
  if (shape == textID)
    set(osmin::kKeyMetricID, text(std::to_string(known)));
  else if (shape == anyID)
    set(osmin::kKeyMetricID, integer(static_cast<std::int64_t>(input.number())));
  else if (shape != noID)
    set(osmin::kKeyMetricID, integer(known));
  if (shape == textPayload)
    set(osmin::kKeyPayload, text(input.text()));
  else if (shape != noPayload)
    set(osmin::kKeyPayload, data(input.chunk()));
  set(osmin::kKeyProfileID, integer(0));
  return {shape == trigger ? osmin::kEventTrigger : osmin::kEventMetric, object};
}

Application& Application::instance() {
  static auto& application = *new Application;
  return application;
}

Application::Application() {
  setenv("TZ", "UTC", 1);
  (void)setSystemLogSink([](std::string_view) {});
  (void)setPrintSink([](std::string_view line) { rig().door->latest.lines.emplace_back(line); });
  setCurrentClock(rig().clock);
  osmin::client::setManagerFactory(
      [](const std::string& /*clientName*/, const dispatch_queue_t& /*queue*/) {
        return rig().handlers;
      });
  (void)MetricValidator::sharedInstance();
}

void Application::clear() {
  runMainQueue();
  rig().door->latest = {};
  RunLoop::mainRunLoop() = RunLoop();
  rig().clock.now = Milliseconds(0);
  validator() = MetricValidator();
  OsminWrapper::sharedInstance()->setDelegate(rig().door);
}

Application::Delivered Application::deliver(const Event& event) {
  rig().door->latest = {};
  rig().handlers->run(event.kind, event.object);
  runMainQueue();
  return std::move(rig().door->latest);
}

void Application::advance(Milliseconds time) {
  Milliseconds& now = rig().clock.now;
  const Milliseconds end = now + time;
  runMainQueue();
  RunLoop& loop = RunLoop::mainRunLoop();
  for (auto next = loop.nextTimer(); next && *next <= end; next = loop.nextTimer()) {
    now = std::max(now, *next);
    while (loop.runOnce()) {
    }
  }
  now = end;
}

}  // namespace quorin::fuzz
