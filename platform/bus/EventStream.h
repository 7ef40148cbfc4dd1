#pragma once

#include <functional>

#include "platform/baseband/xpc.h"
#include "platform/bus/handles.h"
#include "platform/dispatch/queue.h"

namespace quorin::bus {

/// The receiving end of a private connection. One thread at a time.
class EventStream {
 public:
  using Sink =
      std::function<void(std::uint64_t sequence, const std::string& kind, const XpcRef& event)>;

  EventStream(PeerConnection peer, Sink sink);
  EventStream(const EventStream&) = delete;
  EventStream& operator=(const EventStream&) = delete;

  /// The connection; null when there is none.
  [[nodiscard]] sd_bus* connection() const { return _peer.get(); }
  /// Gives what has come to the sink, a row of events at most.
  AfterRead read();

  /// Events that the service left out, as gaps in the sequence tell.
  [[nodiscard]] std::uint64_t missed() const { return _missed; }

 private:
  static int onEvent(sd_bus_message* message, void* stream, sd_bus_error* error);

  Sink _sink;
  std::uint64_t _lastSequence = 0;
  std::uint64_t _missed = 0;
  PeerConnection _peer;  // declared last: its callback reaches the rest
};

}  // namespace quorin::bus
