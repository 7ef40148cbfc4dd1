#include "platform/baseband/Loopback.h"

namespace quorin {

namespace {

constexpr std::int64_t kMetricIDPrefix = 0x3C0000;

/// The integer under `key`, or 0.
std::int64_t integerUnder(xpc_object_t dictionary, const char* key) {
  const xpc_object_t value = xpc_dictionary_get_value(dictionary, key);
  return value && xpc_get_type(value) == xpc_type_t::int64 ? xpc_int64_get_value(value) : 0;
}

}  // namespace

class Loopback::Client final : public osmin::client::Manager {
 public:
  Client(std::shared_ptr<Shared> shared, dispatch_queue_t queue)
      : _shared(std::move(shared)), _queue(std::move(queue)) {}

  osmin::CommandResult perform(const std::string& command, xpc_object_t input,
                               xpc_object_t* /*output*/) override {
    if (!input || xpc_get_type(input) != xpc_type_t::dictionary)
      return {osmin::kStatusNotCarriedOut, "the input is no dictionary"};
    if (command == osmin::kCommandQueryMetric) answer(input);
    return {0, ""};
  }

  void registerHandler(const std::string& event, osmin::EventHandler handler) override {
    const std::lock_guard lock(_mutex);
    _handlers[event] = std::make_shared<osmin::EventHandler>(std::move(handler));
  }

  void eventsOff() override { switchEvents(false); }
  void eventsOn() override { switchEvents(true); }

  void deliver(const std::string& kind, const XpcRef& event) {
    const std::lock_guard lock(_mutex);
    const auto handler = _handlers.find(kind);
    if (!_on || handler == _handlers.end() || !_queue) return;
    ++_shared->pending;
    dispatch_async(*_queue, [shared = _shared, run = handler->second, event] {
      (*run)(event.get(), nullptr);
      --shared->pending;
    });
  }

 private:
  void switchEvents(bool on) {
    const std::lock_guard lock(_mutex);
    _on = on;
  }

  /// A query whose metric ID is 0 asks for the tag in the low 16 bits of its trigger ID.
  void answer(xpc_object_t query) {
    std::int64_t id = integerUnder(query, osmin::kKeyMetricID);
    if (id == 0) id = kMetricIDPrefix + (integerUnder(query, osmin::kKeyTriggerID) & 0xffff);
    XpcRef event;
    {
      const std::lock_guard lock(_shared->mutex);
      const auto latest = _shared->latest.find(id);
      if (latest == _shared->latest.end()) return;
      event = latest->second;
    }
    deliver(osmin::kEventMetric, event);
  }

  std::shared_ptr<Shared> _shared;
  dispatch_queue_t _queue;
  std::mutex _mutex;
  std::map<std::string, std::shared_ptr<osmin::EventHandler>> _handlers;
  bool _on = false;
};

void Loopback::install() {
  osmin::client::setManagerFactory(
      [shared = _shared](const std::string& /*clientName*/, dispatch_queue_t queue) {
        auto client = std::make_shared<Client>(shared, std::move(queue));
        const std::lock_guard lock(shared->mutex);
        shared->clients.push_back(client);
        return client;
      });
}

void Loopback::deliver(const std::string& kind, const XpcRef& event) {
  std::vector<std::weak_ptr<Client>> clients;
  {
    const std::lock_guard lock(_shared->mutex);
    if (kind == osmin::kEventMetric)
      _shared->latest[integerUnder(event.get(), osmin::kKeyMetricID)] = event;
    clients = _shared->clients;
  }
  for (const auto& weak : clients)
    if (const auto client = weak.lock()) client->deliver(kind, event);
}

}  // namespace quorin
