#include "tests/support/rig.h"

namespace quorin::test {

std::vector<std::uint8_t> bytes(std::string_view hex) {
  std::string digits;
  for (char c : hex)
    if (c != ' ' && c != '\n') digits += c;
  const auto parsed = bytesFromHex(digits);
  if (!parsed) throw std::invalid_argument("not hexadecimal: " + digits);
  return *parsed;
}

Ref<Data> data(std::string_view hex) { return make<Data>(bytes(hex)); }

RecordedLog::RecordedLog()
    : _systemBefore(
          setSystemLogSink([this](std::string_view line) { _system.emplace_back(line); })),
      _printBefore(setPrintSink([this](std::string_view line) { _printed.emplace_back(line); })) {}

RecordedLog::~RecordedLog() {
  setSystemLogSink(_systemBefore);
  setPrintSink(_printBefore);
}

void VirtualClock::advance(Milliseconds time) {
  const Milliseconds end = _uptime + time;
  runMainQueue();
  RunLoop& loop = RunLoop::mainRunLoop();
  for (auto next = loop.nextTimer(); next && *next <= end; next = loop.nextTimer()) {
    _uptime = std::max(_uptime, *next);
    while (loop.runOnce()) {
    }
  }
  _uptime = end;
}

class ScriptedService::Manager final : public osmin::client::Manager {
 public:
  explicit Manager(ScriptedService& service) : _service(service) {}

  osmin::CommandResult perform(const std::string& command, xpc_object_t input,
                               xpc_object_t* output) override {
    std::string call = "perform " + command;
    if (input && xpc_get_type(input) == xpc_type_t::dictionary)
      xpc_dictionary_apply(input, [&](const std::string& key, xpc_object_t value) {
        call += " " + key + "=" + shown(value);
      });
    else
      call += " " + shown(input);
    if (!output || shown(*output) != "null") call += " (output is not the null object)";
    note(std::move(call));
    const auto answer = _service._answers.find(command);
    return answer == _service._answers.end() ? osmin::CommandResult{} : answer->second;
  }
  void registerHandler(const std::string& event, osmin::EventHandler handler) override {
    note("register " + event);
    _service._handlers[event] = std::move(handler);
  }
  void eventsOff() override { note("eventsOff"); }
  void eventsOn() override { note("eventsOn"); }

 private:
  void note(std::string call) {
    _service._calls.push_back(std::move(call));
    _service._referencesDuringCall = _service._manager.use_count();
  }

  ScriptedService& _service;
};

ScriptedService::ScriptedService() {
  osmin::client::setManagerFactory([this](const std::string& clientName, dispatch_queue_t queue) {
    _clientNames.push_back(clientName);
    _queue = std::move(queue);
    auto manager = std::make_shared<Manager>(*this);
    _manager = manager;
    return manager;
  });
}

ScriptedService::~ScriptedService() { osmin::client::setManagerFactory(nullptr); }

void ScriptedService::answer(const std::string& command, std::int32_t status, std::string message) {
  _answers[command] = {status, std::move(message)};
}

void ScriptedService::deliverToQueue(const std::string& kind, const XpcRef& event) {
  const auto handler = _handlers.at(kind);
  dispatch_async(*_queue, [handler, event] { handler(event.get(), nullptr); });
  waitUntilDone(*_queue);
}

void ScriptedService::deliver(const std::string& kind, const XpcRef& event) {
  deliverToQueue(kind, event);
  runMainQueue();
}

XpcRef metricEvent(std::int64_t id, std::optional<std::string_view> payloadHex) {
  XpcRef event(xpc_dictionary_create(nullptr, nullptr, 0));
  xpc_dictionary_set_value(event.get(), osmin::kKeyMetricID, XpcRef(xpc_int64_create(id)).get());
  if (payloadHex) {
    const auto payload = bytes(*payloadHex);
    xpc_dictionary_set_value(event.get(), osmin::kKeyPayload,
                             XpcRef(xpc_data_create(payload.data(), payload.size())).get());
  }
  xpc_dictionary_set_value(event.get(), osmin::kKeyProfileID, XpcRef(xpc_int64_create(0)).get());
  return event;
}

XpcRef eventOf(const char* key, xpc_object_t value) {
  return XpcRef(xpc_dictionary_create(&key, &value, 1));
}

std::string shown(xpc_object_t object) {
  if (!object) return "nothing";
  switch (xpc_get_type(object)) {
    case xpc_type_t::null: return "null";
    case xpc_type_t::boolean: return xpc_bool_get_value(object) ? "true" : "false";
    case xpc_type_t::int64: return "int64 " + std::to_string(xpc_int64_get_value(object));
    case xpc_type_t::float64: return "double " + std::to_string(xpc_double_get_value(object));
    case xpc_type_t::string: return "string " + std::string(xpc_string_get_string(object));
    case xpc_type_t::data: return "data <" + hexText(xpc_data_get_bytes(object)) + ">";
    case xpc_type_t::dictionary: return "dictionary";
  }
  return "";
}

void runMainQueue() {
  while (dispatch_get_main_queue().runPending()) {
  }
}

}  // namespace quorin::test
