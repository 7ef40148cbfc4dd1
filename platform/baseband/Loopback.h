#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <vector>

#include "platform/baseband/osmin.h"

namespace quorin {

/// The baseband-manager service inside this process: accepts every configuration, answers a query
/// with the asked metric's latest event, and delivers what it is given. Any thread.
class Loopback {
 public:
  /// Makes this loopback the way to the service.
  void install();

  /// Delivers an event to every manager that has events on and a handler for its kind, and keeps
  /// the latest of each metric for queries.
  void deliver(const std::string& kind, const XpcRef& event);

  /// Events that were delivered and whose handlers have not returned.
  [[nodiscard]] std::size_t pending() const { return _shared->pending; }

 private:
  class Client;
  struct Shared {
    std::atomic<std::size_t> pending = 0;
    std::mutex mutex;
    std::vector<std::weak_ptr<Client>> clients;
    std::map<std::int64_t, XpcRef> latest;  // by metric ID
  };
  std::shared_ptr<Shared> _shared = std::make_shared<Shared>();
};

}  // namespace quorin
