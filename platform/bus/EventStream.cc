#include "platform/bus/EventStream.h"

#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace quorin::bus {

namespace {

/// Events read in a row, so that other work gets its turn.
constexpr int kMostAtOnce = 64;

}  // namespace

EventStream::EventStream(PeerConnection peer, Sink sink)
    : _sink(std::move(sink)), _peer(std::move(peer)) {
  if (_peer) (void)sd_bus_add_filter(_peer.get(), nullptr, onEvent, this);
}

AfterRead EventStream::read() {
  for (int i = 0; i < kMostAtOnce; ++i) {
    const int result = sd_bus_process(_peer.get(), nullptr);
    if (result < 0) return AfterRead::end;
    if (result == 0) return AfterRead::wait;
  }
  return AfterRead::goOn;
}

int EventStream::onEvent(sd_bus_message* message, void* stream, sd_bus_error* /*error*/) {
  auto& self = *static_cast<EventStream*>(stream);
  if (!sd_bus_message_is_signal(message, kEventsInterface, kEventSignal)) return 0;
  std::uint64_t sequence = 0;
  const char* kind = nullptr;
  if (sd_bus_message_read(message, "ts", &sequence, &kind) < 0) return 1;
  std::string reason;
  const XpcRef event = readDictionary(message, reason);
  if (!event) return 1;
  if (sequence > self._lastSequence) self._missed += sequence - self._lastSequence - 1;
  self._lastSequence = sequence;
  self._sink(sequence, kind, event);
  return 1;
}

}  // namespace quorin::bus
