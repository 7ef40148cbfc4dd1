#pragma once

#include <functional>
#include <string>

#include "platform/baseband/osmin.h"
#include "platform/bus/EventStream.h"

namespace quorin::bus {

/// One client's session with the service, on one event loop and its thread. Commands go over the
/// bus; events come over a private connection, which is read on a queue, or without one on the
/// loop. When the service comes back after it was gone, the session pushes the last accepted
/// configuration again and switches events on, if they were.
class Session {
 public:
  using EventSink = EventStream::Sink;
  using Reply = std::function<void(const osmin::CommandResult& result)>;

  /// Events go to the sink on the queue, also one that was being read when events went off.
  /// Requires: the loop outlives the session.
  Session(sd_event* loop, EventSink sink, dispatch_queue_t queue = nullptr)
      : _loop(loop), _sink(std::move(sink)), _queue(std::move(queue)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Connects to the bus, unless it is connected. False: it cannot be reached, for this reason.
  [[nodiscard]] bool connect(std::string& reason);

  /// Asks the service; the reply comes on the loop, at the latest when the command's time is over.
  void perform(const std::string& command, const XpcRef& input, Reply reply);
  void eventsOn();
  void eventsOff();

  /// The connection to the bus, for calls beyond the client library's. Null before `connect`.
  [[nodiscard]] sd_bus* control() const { return _control.get(); }

 private:
  static int onReply(sd_bus_message* message, void* pending, sd_bus_error* error);
  static int onEventsReply(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onOwnerChanged(sd_bus_message* message, void* session, sd_bus_error* error);

  void configureAgain();

  sd_event* _loop;
  EventSink _sink;
  dispatch_queue_t _queue;
  XpcRef _configuration;  // the last that the service accepted
  bool _wantsEvents = false;
  // Declared last: they go first, while what their callbacks reach still lives.
  Connection _control;
  Slot _ownerMatch;
  Slot _eventsCall;
  std::shared_ptr<EventStream> _stream;
  dispatch_source_t _reading;
};

}  // namespace quorin::bus
