#include "platform/bus/EventStream.h"

#include "fuzz/support/wire_message.h"
#include "platform/bus/protocol.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The client's end of a private connection; what comes out of it.
class Stream {
 public:
  Stream() { EXPECT_TRUE(fuzz::writeAll(_pair.ours.get(), fuzz::kWelcome)); }

  /// An event of this body comes: after the number the kind "k" and the dictionary.
  void come(std::uint64_t number, std::string_view dictionaryHex) {
    std::string body(reinterpret_cast<const char*>(&number), sizeof number);
    body.append("\x01\0\0\0k\0\0\0", 8);
    const auto dictionary = bytes(dictionaryHex);
    body.append(dictionary.begin(), dictionary.end());
    EXPECT_TRUE(fuzz::writeAll(_pair.ours.get(), fuzz::wireMessage({SD_BUS_MESSAGE_SIGNAL,
                                                                    bus::kPath,
                                                                    bus::kEventsInterface,
                                                                    bus::kEventSignal,
                                                                    {},
                                                                    {},
                                                                    bus::kEventTakes},
                                                                   ++_serial, body)));
    while (_stream.read() == AfterRead::goOn) {
    }
  }
  [[nodiscard]] std::vector<std::string> events() { return std::exchange(_events, {}); }
  [[nodiscard]] std::uint64_t missed() const { return _stream.missed(); }

 private:
  fuzz::SocketPair _pair;
  std::vector<std::string> _events;
  std::uint32_t _serial = 0;
  bus::EventStream _stream{
      bus::openPeer(std::move(_pair.theirs), /*server=*/false),
      [this](std::uint64_t number, const std::string& kind, const XpcRef& event) {
        const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(event.get());
        _events.push_back(std::to_string(number) + " " + kind + " " +
                          printed(record->dictionary()));
        record->release();
      }};
};

TEST(EventStream, CountsGapsAndNothingWhenNumbersBeginAnew) {
  struct Came {
    std::uint64_t number;
    std::uint64_t missed;
  };
  constexpr Came kCame[] = {{1, 0}, {2, 0}, {5, 2}, {5, 2}, {1, 2}, {3, 3}};
  Stream stream;
  for (const Came& came : kCame) {
    stream.come(came.number, "00000000 00000000");
    EXPECT_EQ(stream.missed(), came.missed) << came.number;
  }
  Stream last;
  last.come(~std::uint64_t{0}, "00000000 00000000");
  const std::uint64_t missed = last.missed();
  last.come(7, "00000000 00000000");
  EXPECT_EQ(last.missed(), missed);
}

TEST(EventStream, GivesWholeDictionariesOnly) {
  Stream stream;
  stream.come(1, "0a000000 00000000 01000000 61 00 01 79 00 05");
  EXPECT_THAT(stream.events(), ElementsAre("1 k [:]")) << "of no type that events have";
  stream.come(2, "10000000 00000000 01000000 61 00 01 62 00 000000 01000000");
  EXPECT_THAT(stream.events(), ElementsAre("2 k [a: 1]"));
  // Another entry, behind padding that is none.
  stream.come(
      3, "1a000000 00000000 01000000 61 00 01 79 00 05 ffffffffffff 01000000 62 00 01 79 00 05");
  EXPECT_THAT(stream.events(), IsEmpty());
}

}  // namespace
}  // namespace quorin::test
