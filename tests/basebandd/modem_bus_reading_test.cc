#include "basebandd/modem/bus_reading.h"

#include "fuzz/support/wire_message.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using modem::Reading;
using modem::Readings;

/// The reading of a body as it came over a bus that does not look into it.
Reading readOf(std::string_view signature, std::string_view hex) {
  fuzz::SocketPair pair;
  const auto peer = bus::openPeer(std::move(pair.theirs), /*server=*/false);
  const auto body = bytes(hex);
  const fuzz::MessageHeader header{
      SD_BUS_MESSAGE_SIGNAL, "/modem", "org.example.Modem", "Changed", {}, {}, signature};
  EXPECT_TRUE(fuzz::writeAll(pair.ours.get(), fuzz::kWelcome));
  EXPECT_TRUE(fuzz::writeAll(pair.ours.get(),
                             fuzz::wireMessage(header, 1, std::string(body.begin(), body.end()))));
  sd_bus_message* message = nullptr;
  while (sd_bus_process(peer.get(), &message) > 0 && !message) {
  }
  EXPECT_TRUE(message);
  const bus::Message owned(message);
  return modem::readReading(message);
}

struct Body {
  const char* says;
  const char* signature;
  const char* hex;
  Reading reading;
};

TEST(BusReading, GivesWhatABodyHolds) {
  const Body bodies[] = {
      {"a number", "u", "07000000", {std::int64_t{7}}},
      {"a text", "s", "02000000 6c74 00", {std::string("lt")}},
      {"bytes", "ay", "02000000 0aff", {std::vector<std::uint8_t>{0x0a, 0xff}}},
      {"a variant", "v", "01 79 00 05", {std::int64_t{5}}},
      {"a list",
       "au",
       "08000000 01000000 02000000",
       {std::vector<Reading>{{std::int64_t{1}}, {std::int64_t{2}}}}},
      {"a dictionary",
       "a{sv}",
       "0a000000 00000000 01000000 63 00 01 79 00 05",
       {Readings{{"c", {std::int64_t{5}}}}}},
  };
  for (const Body& body : bodies)
    EXPECT_EQ(readOf(body.signature, body.hex), body.reading) << body.says;
}

TEST(BusReading, GivesNothingForABrokenBody) {
  const Body bodies[] = {
      {"a list whose element is cut short", "au", "02000000 0100", {}},
      {"a list of texts without an end", "as", "04000000 ff000000", {}},
      {"a list of bytes that is longer than the body", "ay", "ff000000 01", {}},
      {"a dictionary with a cut key", "a{sv}", "02000000 00000000 0100", {}},
      {"a variant without a signature", "v", "00 00", {}},
      {"a text that is no UTF-8", "s", "01000000 ff 00", {}},
  };
  for (const Body& body : bodies)
    EXPECT_EQ(readOf(body.signature, body.hex), body.reading) << body.says;
}

}  // namespace
}  // namespace quorin::test
