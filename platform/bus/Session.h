#pragma once

#include <functional>
#include <string>

#include "platform/baseband/osmin.h"
#include "platform/bus/handles.h"

namespace quorin::bus {

/// One client's session with the service, on one event loop and its thread. Commands go over the
/// bus; events come over a private connection. When the service comes back after it was gone, the
/// session pushes the last accepted configuration again and switches events on, if they were.
class Session {
 public:
  using EventSink =
      std::function<void(std::uint64_t sequence, const std::string& kind, const XpcRef& event)>;
  using Reply = std::function<void(const osmin::CommandResult& result)>;

  /// Requires: the loop outlives the session.
  Session(sd_event* loop, EventSink sink) : _loop(loop), _sink(std::move(sink)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Connects to the bus, unless it is connected. False: it cannot be reached, for this reason.
  [[nodiscard]] bool connect(std::string& reason);

  /// Asks the service; the reply comes on the loop, at the latest when the command's time is over.
  void perform(const std::string& command, const XpcRef& input, Reply reply);
  void eventsOn();
  void eventsOff();

  /// Whether events are read as they come; while they are not, the service holds them back.
  void setReading(bool reading);

  /// Events that the service left out, as gaps in the sequence tell.
  [[nodiscard]] std::uint64_t missed() const { return _missed; }

  /// The connection to the bus, for calls beyond the client library's. Null before `connect`.
  [[nodiscard]] sd_bus* control() const { return _control.get(); }

 private:
  static int onReply(sd_bus_message* message, void* pending, sd_bus_error* error);
  static int onEventsReply(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onOwnerChanged(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onEvent(sd_bus_message* message, void* session, sd_bus_error* error);
  static int afterEach(sd_event_source* source, void* session);

  void configureAgain();

  sd_event* _loop;
  EventSink _sink;
  XpcRef _configuration;  // the last that the service accepted
  bool _wantsEvents = false;
  bool _reading = true;
  std::uint64_t _lastSequence = 0;
  std::uint64_t _missed = 0;
  // Declared last: they go first, while what their callbacks reach still lives.
  Connection _control;
  Slot _ownerMatch;
  Slot _eventsCall;
  EventSource _afterEach;
  PeerConnection _peer;
};

}  // namespace quorin::bus
