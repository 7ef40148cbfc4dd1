#include "basebandd/simulator/Reporter.h"

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

Reporter::Reporter() {
  for (const auto& list : {rrcReports(), lteReports(), lteCarrierReports(), umtsReports(),
                           gsmReports(), commonReports()})
    for (const Report& report : list) _watched.push_back({&report, nullptr});
}

bool Reporter::isDue(Watched& watched, const State& state) {
  const Report& report = *watched.report;
  if (report.periodMs == 0) {
    const Ref<Data> now = report.make(state, std::nullopt);
    const bool isNew = now && !areEqual(now, watched.latest);
    watched.latest = now;
    return isNew;
  }
  const std::uint64_t key = report.key ? report.key(state) : 0;
  const bool isOther = key != watched.key;
  watched.key = key;
  return isOther || state.now % report.periodMs == report.phaseMs;
}

void Reporter::report(const State& state, std::int64_t start, const Take& take) {
  const auto stamp = static_cast<std::uint64_t>(start + state.now);
  for (Watched& watched : _watched)
    if (isDue(watched, state))
      if (Ref<Data> payload = watched.report->make(state, stamp))
        take(watched.report->metricID, std::move(payload));
}

}  // namespace quorin::simulator
