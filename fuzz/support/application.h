#pragma once

#include "fuzz/support/Input.h"
#include "metrics/MetricValidator.h"

namespace quorin::fuzz {

/// One event of the service, as a fuzzer's bytes ask for it: mostly a metric with a payload,
/// sometimes what the service never sends.
struct Event {
  std::string kind;  // osmin::kEventMetric or osmin::kEventTrigger
  XpcRef object;
};
[[nodiscard]] Event eventFrom(Input& input);

/// The application from the client library's handlers to the store, on one thread and on a clock
/// that it moves. One for the process.
class Application {
 public:
  [[nodiscard]] static Application& instance();

  /// Empty stores, no timers, uptime 0; the same again when this goes, so that nothing is kept from
  /// one input to the next.
  class Run {
   public:
    Run() { instance().clear(); }
    ~Run() { instance().clear(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
  };

  /// What became of an event.
  struct Delivered {
    Dictionary event;                // as the store saw it
    bool isLeftOut = false;          // the store would have ended the process over it: meant
    std::vector<std::string> lines;  // that it printed
  };
  /// Hands the event to its handler and runs the main queue. What the store is meant to end the
  /// process for goes no further than the delegate.
  Delivered deliver(const Event& event);

  /// Moves the clock, running timers and posted work as they come due.
  void advance(Milliseconds time);

  [[nodiscard]] MetricValidator& validator() { return *MetricValidator::sharedInstance(); }

 private:
  Application();
  void clear();
};

}  // namespace quorin::fuzz
