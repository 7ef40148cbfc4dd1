#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace quorin::test {

/// Bytes from readable hexadecimal: blanks and line ends are passed over.
[[nodiscard]] std::vector<std::uint8_t> bytes(std::string_view hex);
[[nodiscard]] Ref<Data> data(std::string_view hex);

/// Keeps the lines of both log channels while it lives.
class RecordedLog {
 public:
  RecordedLog();
  ~RecordedLog();

  /// Lines so far, oldest first; reading takes them out.
  [[nodiscard]] std::vector<std::string> systemLines() { return std::exchange(_system, {}); }
  [[nodiscard]] std::vector<std::string> printedLines() { return std::exchange(_printed, {}); }

 private:
  std::vector<std::string> _system;
  std::vector<std::string> _printed;
  LogSink _systemBefore;
  LogSink _printBefore;
};

/// A clock that stands still until the test moves it; in force while it lives.
class VirtualClock final : public Clock {
 public:
  VirtualClock() { setCurrentClock(*this); }
  ~VirtualClock() override { setCurrentClock(systemClock()); }

  [[nodiscard]] Milliseconds uptime() const override { return _uptime; }
  [[nodiscard]] Milliseconds sinceEpoch() const override { return _uptime; }
  /// Moves on by `time`, running the main run loop's timers and work as they come due.
  void advance(Milliseconds time);

 private:
  Milliseconds _uptime{0};
};

/// One call of the client library, as text: "perform kCommandQueryMetric kKeyAppID=int64 2 …",
/// "register kEventMetric", "eventsOff", "eventsOn".
class ScriptedService {
 public:
  /// Makes this the way to the service.
  ScriptedService();
  ~ScriptedService();

  /// The calls so far, oldest first; reading takes them out.
  [[nodiscard]] std::vector<std::string> calls() { return std::exchange(_calls, {}); }
  /// What a command answers from now on; without this, status 0.
  void answer(const std::string& command, std::int32_t status, std::string message);
  /// Runs the handler of this event kind on the manager's queue, then the main queue's work.
  void deliver(const std::string& kind, const XpcRef& event);
  /// Runs the handler of this event kind on the manager's queue only.
  void deliverToQueue(const std::string& kind, const XpcRef& event);

  [[nodiscard]] const std::vector<std::string>& clientNames() const { return _clientNames; }
  /// References to the manager while the latest call ran, and between calls.
  [[nodiscard]] long referencesDuringCall() const { return _referencesDuringCall; }
  [[nodiscard]] long references() const { return _manager.use_count(); }

 private:
  class Manager;
  friend class Manager;
  std::vector<std::string> _calls;
  std::vector<std::string> _clientNames;
  std::map<std::string, osmin::CommandResult> _answers;
  std::map<std::string, osmin::EventHandler> _handlers;
  std::weak_ptr<Manager> _manager;
  dispatch_queue_t _queue;
  long _referencesDuringCall = 0;
};

/// An event as the service sends it. No payload: an event without one.
[[nodiscard]] XpcRef metricEvent(std::int64_t id, std::optional<std::string_view> payloadHex);
/// An event of one entry under any key.
[[nodiscard]] XpcRef eventOf(const char* key, xpc_object_t value);

/// "type value" of an inter-process object: "int64 2", "data <0a>", "null".
[[nodiscard]] std::string shown(xpc_object_t object);

/// Runs the main queue's work until there is none.
void runMainQueue();

}  // namespace quorin::test
