#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorin::test {

/// One event of a handled metric and what comes of it.
struct SampleMetric {
  std::int64_t id;
  std::string messageClass;
  std::string store;    // its accessor
  std::string logText;  // before the store's printed form
  std::string payload;  // hexadecimal
  std::string logged;   // the store's printed form in its log line
  std::string kept;     // and in the store
};

/// One of each of the 30 handled metrics, ascending by ID. Requires: the zone is UTC.
[[nodiscard]] const std::vector<SampleMetric>& sampleMetrics();

/// Delivers them all to the shared store, and drops what is printed meanwhile.
void handleSampleMetrics();

}  // namespace quorin::test
