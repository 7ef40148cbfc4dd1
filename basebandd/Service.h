#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "basebandd/deviceconfig.h"
#include "platform/platform.h"

namespace quorin {

/// Where a session's events go.
class EventChannel {
 public:
  virtual ~EventChannel() = default;
  /// Whether it takes an event now, without queueing beyond its bound.
  [[nodiscard]] virtual bool isReady() const = 0;
  virtual void send(std::uint64_t sequence, const char* kind, const XpcRef& event) = 0;
};

/// How a session stands, for `metricctl status`.
struct SessionStatus {
  std::string name;
  bool configured = false;
  bool eventsOn = false;
  std::size_t metrics = 0;    // asked for
  std::uint64_t sent = 0;     // events
  std::uint64_t dropped = 0;  // events that newer ones of their metric replaced
  std::size_t waiting = 0;    // events held back
};

/// How a metric stands.
struct MetricStatus {
  std::int64_t id = 0;
  std::uint64_t count = 0;
  Milliseconds age{0};
};

/// The baseband manager: sessions, their configurations, queries and deliveries. Knows no bus.
/// Whatever a client does, a session holds at most one waiting event of each metric. One thread.
class Service {
 public:
  // What commands answer beside 0.
  static constexpr std::int32_t kUnknownCommand = 1;
  static constexpr std::int32_t kBadInput = 2;
  static constexpr std::int32_t kBadConfiguration = 3;
  static constexpr std::int32_t kNoValue = 4;

  /// The longest payload that it takes.
  static constexpr std::size_t kMostPayloadBytes = 65'536;

  /// Carries out a command of the session of this name, which is made when it is new.
  [[nodiscard]] osmin::CommandResult perform(const std::string& session, std::string_view command,
                                             const XpcRef& input);
  /// Switches the session's events on, over this channel, from sequence number 1. Each configured
  /// metric's current value is delivered once.
  void eventsOn(const std::string& session, std::shared_ptr<EventChannel> channel);
  void eventsOff(const std::string& session);
  void sessionGone(const std::string& session) { _sessions.erase(session); }

  /// Takes a metric from the source. False: it is none that there is, or too long, as `reason`
  /// says.
  [[nodiscard]] bool takeMetric(std::int64_t id, const Ref<Data>& payload, std::string& reason);

  /// Asks this whether a metric's latest value is no longer current: it is neither delivered when
  /// events are switched on nor given to a query.
  void setIsStale(std::function<bool(std::int64_t id)> isStale) { _isStale = std::move(isStale); }

  /// Sends what is due and what waited for its channel.
  void deliver();
  /// Uptime when `deliver` next has something to send that only waits for its period; empty: never.
  [[nodiscard]] std::optional<Milliseconds> nextDelivery() const;

  [[nodiscard]] std::vector<SessionStatus> sessions() const;
  [[nodiscard]] std::vector<MetricStatus> metrics() const;

 private:
  struct Latest {
    XpcRef event;
    Ref<Data> payload;
    std::uint64_t count = 0;
    Milliseconds arrival{0};
  };
  struct Waiting {
    std::uint64_t sequence;
    XpcRef event;
    Milliseconds due;
  };
  struct Session {
    DeviceConfig config;
    bool configured = false;
    std::shared_ptr<EventChannel> channel;
    std::uint64_t sequence = 0;
    std::uint64_t sent = 0;
    std::uint64_t dropped = 0;
    std::map<std::int64_t, Waiting> waiting;        // by metric ID, the newest of each
    std::map<std::int64_t, Milliseconds> lastSent;  // by metric ID
  };
  struct Command;

  osmin::CommandResult addConfiguration(Session& session, const XpcRef& input);
  osmin::CommandResult clearConfiguration(Session& session, const XpcRef& input);
  osmin::CommandResult query(Session& session, const XpcRef& input);
  static void enqueue(Session& session, std::int64_t id, const XpcRef& event, Milliseconds due);
  static void flush(Session& session, Milliseconds now);

  [[nodiscard]] bool isStale(std::int64_t id) const { return _isStale && _isStale(id); }

  std::function<bool(std::int64_t id)> _isStale;
  std::map<std::string, Session> _sessions;  // by unique bus name
  std::map<std::int64_t, Latest> _latest;    // by metric ID
};

}  // namespace quorin
