#pragma once

#include "metrics/MetricValidator.h"
#include "tests/support/rig.h"
#include "tests/support/wire.h"

namespace quorin::test {

/// An event as the store's handler takes it. No payload: an event without one.
[[nodiscard]] inline Dictionary eventWith(std::int64_t id, std::optional<std::string_view> fields) {
  Dictionary event{{"kKeyMetricID", Value(id)}};
  if (fields) event.set(Literal{"kKeyPayload"}, Value(test::data(wire(*fields))));
  return event;
}

/// The shared store behind a scripted service, its start-up lines already read.
struct Intake {
  RecordedLog log;
  ScriptedService service;
  const std::shared_ptr<MetricValidator>& validator = MetricValidator::sharedInstance();

  Intake() { (void)log.systemLines(); }

  /// Handles one event and gives the lines that it printed.
  std::vector<std::string> handle(std::int64_t id, std::optional<std::string_view> fields) {
    _answer = validator->isMetricIDValidWithMetricdict(eventWith(id, fields));
    return log.printedLines();
  }
  /// What the handler answered for the latest event.
  [[nodiscard]] bool answer() const { return _answer; }

 private:
  bool _answer = false;
};

}  // namespace quorin::test
