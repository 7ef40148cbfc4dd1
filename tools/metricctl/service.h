#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/bus/Session.h"
#include "platform/platform.h"

namespace quorin::metricctl {

/// An event as it came from the service.
struct WatchedEvent {
  std::uint64_t sequence;
  std::int64_t id;
  Ref<Data> payload;
  Milliseconds arrival;  // since 1970, by the clock as it was at the first
};

/// Asks the service for these metrics (all when there are none) and gives each event to `take`
/// until that answers false or a signal ends it. False: `reason` says why it cannot be.
[[nodiscard]] bool watchService(const std::vector<std::string>& metrics,
                                const std::function<bool(const WatchedEvent&)>& take,
                                std::string& reason);

/// Appends a call's arguments; negative: the bus's error.
using Arguments = std::function<int(sd_bus_message* call)>;

/// Calls a method of the service's interface and waits. Null: `reason` says why it failed.
[[nodiscard]] bus::Message callService(sd_bus* bus, const char* method, const Arguments& arguments,
                                       std::string& reason);

}  // namespace quorin::metricctl
