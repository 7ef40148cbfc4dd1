#pragma once

#include <functional>
#include <string>

#include "platform/baseband/osmin.h"
#include "platform/bus/EventStream.h"

namespace quorin::bus {

/// One client's session with the service, on one event loop and its thread. Commands go over the
/// bus; events come over a private connection, which is read on a queue, or without one on the
/// loop. When the service or the bus comes, or comes back, the session pushes the last
/// configuration that the service did not refuse and switches events on, if they are wanted.
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
  struct Command {
    Session& session;
    std::string name;
    XpcRef input;
    Reply reply;
  };
  static int onReply(sd_bus_message* message, void* command, sd_bus_error* error);
  static int onEventsReply(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onOwnerChanged(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onDisconnected(sd_bus_message* message, void* session, sd_bus_error* error);
  static int onTryAgain(sd_event_source* source, std::uint64_t time, void* session);

  /// Keeps what is to be pushed again, and replies.
  void conclude(const Command& command, const osmin::CommandResult& result, bool isRefused);
  void configureAgain();
  void tryAgainSoon();

  sd_event* _loop;
  EventSink _sink;
  dispatch_queue_t _queue;
  XpcRef _configuration;  // the last that the service did not refuse
  bool _wantsEvents = false;
  // Declared last: they go first, while what their callbacks reach still lives.
  EventSource _trying;
  Connection _control;
  Slot _ownerMatch;
  Slot _lossMatch;
  Slot _eventsCall;
  std::shared_ptr<EventStream> _stream;
  dispatch_source_t _reading;
};

}  // namespace quorin::bus
