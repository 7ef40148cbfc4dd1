#pragma once

#include <deque>
#include <map>

#include "basebandd/MetricSource.h"
#include "basebandd/modem/reports.h"

namespace quorin::modem {

/// Turns refreshes of a modem's readings into metrics, each once, and knows which of them are
/// still refreshed. Holds at most the newest of each metric. One thread.
class ReportQueue {
 public:
  /// The readings as they are now, and the groups that were refreshed.
  void refresh(const ModemReadings& readings, Groups refreshed);
  /// Another modem is followed from now on: what the one before gave is no measure of this one.
  void start();

  [[nodiscard]] bool isEmpty() const { return _waiting.empty(); }
  /// Gives the sink the oldest metric. Requires: there is one.
  void give(const MetricSource::Sink& sink);
  [[nodiscard]] Standing standing(std::int64_t metricID) const;

 private:
  struct Known {
    Ref<Data> content;  // the latest, without its time
    bool isLive = false;
    Milliseconds since{0};  // when it was last refreshed, or found to be stale
  };
  void enqueue(std::int64_t metricID, Ref<Data> payload);

  std::map<std::int64_t, Known> _known;  // by metric ID
  std::deque<std::pair<std::int64_t, Ref<Data>>> _waiting;
};

}  // namespace quorin::modem
