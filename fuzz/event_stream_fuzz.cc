#include "fuzz/support/Input.h"
#include "fuzz/support/promise.h"
#include "fuzz/support/wire_message.h"
#include "platform/bus/EventStream.h"
#include "platform/bus/protocol.h"

namespace {

using namespace quorin;
using fuzz::promise;

/// What a service may send on the private connection: what it should, and what it should not.
struct Shape {
  fuzz::MessageHeader header;
  bool isEvent;
};
constexpr fuzz::MessageHeader kEvent{SD_BUS_MESSAGE_SIGNAL, bus::kPath, bus::kEventsInterface,
                                     bus::kEventSignal,     {},         {},
                                     bus::kEventTakes};
constexpr fuzz::MessageHeader with(fuzz::MessageHeader header, std::string_view signature) {
  header.signature = signature;
  return header;
}
constexpr Shape kShapes[] = {
    {kEvent, true},
    {kEvent, true},
    {kEvent, true},
    {kEvent, true},
    {with(kEvent, "tsa{ss}"), true},
    {with(kEvent, "ts"), true},
    {with(kEvent, "sta{sv}"), true},
    {{SD_BUS_MESSAGE_SIGNAL, bus::kPath, bus::kInterface, bus::kEventSignal, {}, {}, "tsa{sv}"},
     false},
    {{SD_BUS_MESSAGE_METHOD_CALL,
      bus::kPath,
      bus::kEventsInterface,
      bus::kEventSignal,
      {},
      {},
      "tsa{sv}"},
     false},
};

/// The client's end of a private connection, and what its events came to.
class Client {
 public:
  explicit Client(fuzz::SocketPair& pair)
      : _stream(bus::openPeer(std::move(pair.theirs), /*server=*/false),
                [this](std::uint64_t sequence, const std::string& kind, const XpcRef& event) {
                  take(sequence, kind, event);
                }) {
    promise(_stream.connection(), "the connection can be made");
  }

  void read() {
    while (_stream.read() == AfterRead::goOn) {
    }
    promise(_stream.missed() == _missed, "gaps in the sequence are counted");
  }
  [[nodiscard]] std::size_t taken() const { return _taken; }

 private:
  void take(std::uint64_t sequence, const std::string& /*kind*/, const XpcRef& event) {
    promise(event && xpc_get_type(event.get()) == xpc_type_t::dictionary,
            "every event is a dictionary");
    promise(xpc_dictionary_get_count(event.get()) <= 64, "an event has 64 keys at most");
    const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(event.get());
    promise(record && record->dictionary().size() == xpc_dictionary_get_count(event.get()),
            "every event has its record");
    (void)printed(record->dictionary());
    record->release();
    if (sequence > _last) _missed += sequence - _last - 1;  // numbers that begin anew miss nothing
    _last = sequence;
    ++_taken;
  }

  std::uint64_t _last = 0;
  std::uint64_t _missed = 0;
  std::size_t _taken = 0;
  bus::EventStream _stream;
};

}  // namespace

// What comes on a private connection: messages, each a shape and a body; a last one raw.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::Input input(bytes, size);
  fuzz::SocketPair pair;
  const int service = pair.ours.get();
  Client client(pair);
  (void)fuzz::writeAll(service, fuzz::kWelcome);
  client.read();
  std::size_t events = 0;
  std::uint32_t serial = 0;
  while (!input.empty()) {
    const std::uint8_t choice = input.byte();
    if (choice == 0xff) {
      const Bytes raw = input.rest();
      (void)fuzz::writeAll(service, {reinterpret_cast<const char*>(raw.data()), raw.size()});
      client.read();
      return 0;
    }
    const Shape& shape = kShapes[choice % std::size(kShapes)];
    if (shape.isEvent) ++events;
    (void)fuzz::writeAll(service, fuzz::wireMessage(shape.header, ++serial, input.text()));
    client.read();
    promise(client.taken() <= events, "only events are taken for events");
  }
  return 0;
}
