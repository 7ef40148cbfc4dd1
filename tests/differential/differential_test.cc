#include "messages/catalogue.h"
#include "tests/differential/peer.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

std::string bytesOf(const AnyMessage& message) {
  PBDataWriter writer;
  message.writeTo(writer);
  return {writer.bytes().begin(), writer.bytes().end()};
}

Ref<AnyMessage> readOurs(std::string_view className, const std::string& payload, bool& ok) {
  const auto message = catalogueRow(className)->table->make();
  ok = message->initWithData(make<Data>(std::vector<std::uint8_t>(payload.begin(), payload.end())));
  return message;
}

TEST(StandardLibrary, GivesTheSameFieldsAndTheSameBytesForThousandsOfMessages) {
  const Peer peer;
  std::mt19937 random(20260101);
  std::size_t compared = 0;
  for (const CatalogueRow& row : catalogue()) {
    SCOPED_TRACE(row.table->name);
    for (int i = 0; i < 100; ++i) {
      const auto theirs = peer.make(row.table->name);
      Peer::fill(*theirs, random);
      const std::string payload = theirs->SerializeAsString();

      bool ok = false;
      const auto ours = readOurs(row.table->name, payload, ok);
      ASSERT_TRUE(ok);
      ASSERT_EQ(ours->dictionaryRepresentation(), Peer::dictionaryOf(*theirs))
          << printed(ours->dictionaryRepresentation()) << "\n"
          << printed(Peer::dictionaryOf(*theirs));
      ASSERT_EQ(bytesOf(*ours), payload);

      const auto back = peer.make(row.table->name);
      ASSERT_TRUE(back->ParseFromString(bytesOf(*ours)));
      ASSERT_EQ(back->SerializeAsString(), payload);
      ++compared;
    }
  }
  EXPECT_EQ(compared, 5600U);
}

/// Where the rules differ on purpose: what ours reads, and what the standard library reads.
struct Difference {
  const char* says;
  const char* className;
  const char* hex;
  bool oursOk;
  const char* ours;
  bool theirsOk;
  const char* theirs;
};

const Difference kDifferences[] = {
    {"field numbers are cut to 16 bits", "KCellularLteRrcState", "88 80 20 2a", true,
     "[timestamp: 42]", true, "[:]"},
    {"field number 0 is skipped", "KCellularLteRrcState", "00 05 08 01", true, "[timestamp: 1]",
     false, "[:]"},
    {"a registered tag reads one varint whatever the wire type", "KCellularLteRrcState",
     "a2 e0 09 02 08 07", true, "[timestamp: 7]", true, "[:]"},
    {"field 19 is never read", "KCellularLteSelReselCellInfo", "98 01 05", true, "[:]", true,
     "[Thresh_serving_lowQ: 5]"},
    {"the wire type of a singular field is not looked at", "KCellularLteRrcState", "0a 01 07",
     false, "[timestamp: 1]", true, "[:]"},
    {"nor is that of a list of messages", "KCellularSimCardFiles", "10 02 08 05", true,
     "[ef_list: [[ef_id: 5]]]", true, "[timestamp: 5]"},
    {"packed numbers are a run or one varint", "KCellularLteSelReselCellInfo", "15 07 08 01", true,
     "[timestamp: 1, multi_band_info: [7]]", false, "[:]"},
    {"a key may be written in ten bytes", "KCellularLteRrcState", "88 80 80 80 80 00 2a", true,
     "[timestamp: 42]", false, "[:]"},
    {"a length may be written in ten bytes", "KCellularLteRsrpRsrqSinr", "1a 81 80 80 80 80 00 61",
     true, "[call_id: a]", false, "[:]"},
    {"a group's ends have the same low 16 bits", "KCellularLteRrcState", "7b fc 80 20 08 01", true,
     "[timestamp: 1]", false, "[:]"},
    {"the end of a group ends the message", "KCellularLteRrcState", "08 01 0c 10 03", true,
     "[timestamp: 1]", false, "[timestamp: 1]"},
    {"a varint of more than ten bytes is 0", "KCellularLteRrcState",
     "08 80 80 80 80 80 80 80 80 80 80 10 03", true,
     "[timestamp: 0, state: KLTE_RRC_STATE_CONNECTED]", false, "[:]"},
    {"an encoded sint32 with bit 31 shifts its sign in", "TxPowerInfo", "08 ff ff ff ff 0f", true,
     "[pucch_tx_power: 0]", true, "[pucch_tx_power: -2147483648]"},
    {"a second singular nested message replaces the first", "KCellularEmmContext",
     "32 02 08 05 32 02 10 06", true, "[guti: [mmec: 6]]", true, "[guti: [mmegi: 5, mmec: 6]]"},
    {"an enumeration value without a name stays in its field", "KCellularLteRrcState", "10 07",
     true, "[state: (unknown: 7)]", true, "[:]"},
};

TEST(StandardLibrary, DiffersOnlyWhereOursIsMeantTo) {
  RecordedLog log;
  const Peer peer;
  for (const Difference& row : kDifferences) {
    SCOPED_TRACE(row.says);
    const auto payload = bytes(row.hex);
    const std::string text(payload.begin(), payload.end());
    bool ok = false;
    const auto ours = readOurs(row.className, text, ok);
    EXPECT_EQ(ok, row.oursOk);
    EXPECT_EQ(printed(ours->dictionaryRepresentation()), row.ours);
    const auto theirs = peer.make(row.className);
    EXPECT_EQ(theirs->ParseFromString(text), row.theirsOk);
    EXPECT_EQ(printed(Peer::dictionaryOf(*theirs)), row.theirs);
  }
}

TEST(StandardLibrary, NestsGroupsLessDeep) {
  const std::string groups = std::string(200, '\x7b') + std::string(200, '\x7c') + "\x08\x01";
  bool ok = false;
  EXPECT_EQ(bytesOf(*readOurs("KCellularLteRrcState", groups, ok)), "\x08\x01");
  EXPECT_TRUE(ok);
  EXPECT_FALSE(Peer().make("KCellularLteRrcState")->ParseFromString(groups));
}

TEST(StandardLibrary, KeepsUnknownFieldsThatOursDrops) {
  const Peer peer;
  const std::string payload("\x08\x01\x78\x05", 4);
  bool ok = false;
  EXPECT_EQ(bytesOf(*readOurs("KCellularLteRrcState", payload, ok)), std::string("\x08\x01", 2));
  const auto theirs = peer.make("KCellularLteRrcState");
  EXPECT_TRUE(theirs->ParseFromString(payload));
  EXPECT_EQ(theirs->SerializeAsString(), payload);
}

}  // namespace
}  // namespace quorin::test
