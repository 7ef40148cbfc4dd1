#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <string>

#include "platform/platform.h"

namespace quorin {

/// How a metric of a source stands.
struct Standing {
  enum State : std::uint8_t { live, stale, notOffered };
  State state;
  Milliseconds age;  // since it last came, or since it is stale
};

/// Where the service's metrics come from: a simulated modem, a recording, or a live one.
/// One thread; time is handed in, so that tests own it.
class MetricSource {
 public:
  /// Takes one metric: its ID and its encoded message.
  using Sink = std::function<void(std::int64_t metricID, const Ref<Data>& payload)>;

  virtual ~MetricSource() = default;

  /// Uptime when the next metric is due; empty: never again.
  [[nodiscard]] virtual std::optional<Milliseconds> next() const = 0;

  /// Gives the sink the next metric, due or not. Requires: there is one.
  virtual void give(const Sink& sink) = 0;

  /// Gives the sink the metrics that are due until `now` (uptime), at most so many, in the order of
  /// their time.
  void advanceTo(Milliseconds now, const Sink& sink,
                 std::size_t most = std::numeric_limits<std::size_t>::max()) {
    for (; most > 0 && next() && *next() <= now; --most) give(sink);
  }

  /// How the metric stands; empty: the source goes on with all that it gives.
  [[nodiscard]] virtual std::optional<Standing> standing(std::int64_t /*metricID*/) const {
    return std::nullopt;
  }

  /// Has this called whenever `next` comes nearer by itself.
  virtual void setWake(std::function<void()> /*wake*/) {}

  /// One line for people: what the source is and how it stands.
  [[nodiscard]] virtual std::string description() const = 0;
};

}  // namespace quorin
