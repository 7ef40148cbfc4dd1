#include "basebandd/modem/ReportQueue.h"

#include <algorithm>

namespace quorin::modem {

void ReportQueue::refresh(const ModemReadings& readings, Groups refreshed) {
  const auto time = static_cast<std::uint64_t>(currentClock().sinceEpoch().count());
  for (const Report& report : reports()) {
    const Ref<Data> content = report.make(readings, std::nullopt);
    const auto found = _known.find(report.metricID);
    if (!content) {
      if (found != _known.end() && std::exchange(found->second.isLive, false))
        found->second.since = currentClock().uptime();
      continue;
    }
    Known& known = _known[report.metricID];
    const bool isDue = (report.measured & refreshed) != 0 ||
                       ((report.groups & refreshed) != 0 && !areEqual(known.content, content));
    if (isDue || !known.isLive) {
      enqueue(report.metricID, report.make(readings, time));
      known.since = currentClock().uptime();
    }
    known.content = content;
    known.isLive = true;
  }
}

void ReportQueue::start() {
  for (auto& [metricID, known] : _known) {
    if (known.isLive) known.since = currentClock().uptime();
    known = {nullptr, false, known.since};
  }
}

void ReportQueue::enqueue(std::int64_t metricID, Ref<Data> payload) {
  std::erase_if(_waiting, [&](const auto& event) { return event.first == metricID; });
  _waiting.emplace_back(metricID, std::move(payload));
}

void ReportQueue::give(const MetricSource::Sink& sink) {
  const auto [metricID, payload] = std::move(_waiting.front());
  _waiting.pop_front();
  sink(metricID, payload);
}

Standing ReportQueue::standing(std::int64_t metricID) const {
  const auto known = _known.find(metricID);
  if (known == _known.end()) return {Standing::notOffered, Milliseconds{0}};
  return {known->second.isLive ? Standing::live : Standing::stale,
          currentClock().uptime() - known->second.since};
}

}  // namespace quorin::modem
