#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "basebandd/simulator/reports.h"

namespace quorin::simulator {

/// Watches a state and gives out the reports that are due. One thread.
class Reporter {
 public:
  /// Takes one report's metric ID and payload.
  using Take = std::function<void(std::int64_t metricID, Ref<Data> payload)>;

  Reporter();

  /// Gives every report that is due at the state's time; `start` is the time of day in ms since
  /// 1970 at which the drive began.
  void report(const State& state, std::int64_t start, const Take& take);

 private:
  struct Watched {
    const Report* report;
    Ref<Data> latest;       // without time stamp, of a report that comes when it changed
    std::uint64_t key = 0;  // the latest
  };
  [[nodiscard]] static bool isDue(Watched& watched, const State& state);

  std::vector<Watched> _watched;
};

}  // namespace quorin::simulator
