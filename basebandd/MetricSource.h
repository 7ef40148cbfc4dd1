#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/platform.h"

namespace quorin {

/// Where the service's metrics come from: a simulated modem, a recording, or a live one.
/// One thread; time is handed in, so that tests own it.
class MetricSource {
 public:
  /// Takes one metric: its ID and its encoded message.
  using Sink = std::function<void(std::int64_t metricID, const Ref<Data>& payload)>;

  virtual ~MetricSource() = default;

  /// Gives the sink every metric that is due until `now` (uptime), in the order of their time.
  virtual void advanceTo(Milliseconds now, const Sink& sink) = 0;

  /// Uptime when `advanceTo` next has something to give; empty: never again.
  [[nodiscard]] virtual std::optional<Milliseconds> next() const = 0;

  /// One line for people: what the source is and how it stands.
  [[nodiscard]] virtual std::string description() const = 0;
};

}  // namespace quorin
