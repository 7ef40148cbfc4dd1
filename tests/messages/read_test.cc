#include "messages/catalogue.h"
#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/shared/TxPowerInfo.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "tests/support/rig.h"
#include "tests/support/tables.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What reading a payload came to.
struct Read {
  bool ok;
  std::string dictionary;
  friend bool operator==(const Read&, const Read&) = default;
  friend void PrintTo(const Read& read, std::ostream* out) {
    *out << (read.ok ? "true " : "false ") << read.dictionary;
  }
};

Read read(std::string_view className, std::string_view hex) {
  const auto message = catalogueRow(className)->table->make();
  const bool ok = message->initWithData(data(hex));
  return {ok, printed(message->dictionaryRepresentation())};
}

struct Case {
  const char* says;
  const char* className;
  const char* hex;
  Read expected;
};

// clang-format off
const Case kCases[] = {
    {"an empty payload is a message without fields", "KCellularLteRrcState", "", {true, "[:]"}},
    {"a value without a name shows its number", "KCellularLteRrcState", "10 07",
     {true, "[state: (unknown: 7)]"}},
    {"a negative enumeration value of ten bytes keeps its sign", "KCellularLteRrcState",
     "10 ff ff ff ff ff ff ff ff ff 01", {true, "[state: (unknown: -1)]"}},
    {"an enumeration keeps the low 32 bits", "KCellularLteRrcState", "10 83 80 80 80 10",
     {true, "[state: KLTE_RRC_STATE_CONNECTED]"}},
    {"uint64 keeps all 64 bits", "KCellularLteRrcState", "08 ff ff ff ff ff ff ff ff ff 01",
     {true, "[timestamp: 18446744073709551615]"}},
    {"uint32 keeps the low 32 bits", "KCellularLteRrcState", "20 ff ff ff ff ff ff ff ff ff 01",
     {true, "[prev_state_dur_ms: 4294967295]"}},
    {"bits beyond the 64th are dropped from the tenth byte", "KCellularLteRrcState",
     "08 80 80 80 80 80 80 80 80 80 7f", {true, "[timestamp: 9223372036854775808]"}},
    {"a varint of more than ten bytes is 0, and the eleventh byte is a key",
     "KCellularLteRrcState", "08 80 80 80 80 80 80 80 80 80 80 10 03",
     {true, "[timestamp: 0, state: KLTE_RRC_STATE_CONNECTED]"}},
    {"an over-long key skips one varint", "KCellularLteRrcState",
     "8a 80 80 80 80 80 80 80 80 80 05 10 03", {true, "[state: KLTE_RRC_STATE_CONNECTED]"}},
    {"field number 0 is unknown and skipped", "KCellularLteRrcState", "00 05 10 03",
     {true, "[state: KLTE_RRC_STATE_CONNECTED]"}},
    {"field number 65537 is field 1", "KCellularLteRrcState", "88 80 20 2a",
     {true, "[timestamp: 42]"}},
    {"the last of a scalar given twice counts", "KCellularLteRrcState", "08 01 08 02",
     {true, "[timestamp: 2]"}},
    {"fields may come in any order", "KCellularLteRrcState", "28 00 08 01",
     {true, "[timestamp: 1, cause: KLTE_RRC_CAUSE_EST_EMERGENCY]"}},
    {"a singular field is read by its own rule whatever the wire type", "KCellularLteRrcState",
     "0a 07 15 03", {true, "[timestamp: 7, state: KLTE_RRC_STATE_CONNECTED]"}},
    {"a truncated varint leaves the field present as 0", "KCellularLteRrcState", "08 01 20 80",
     {false, "[timestamp: 1, prev_state_dur_ms: 0]"}},
    {"a key without a value leaves the field present as 0", "KCellularLteRrcState", "10",
     {false, "[state: KLTE_RRC_STATE_NULL]"}},
    {"a truncated key ends the reading", "KCellularLteRrcState", "08 01 90",
     {false, "[timestamp: 1]"}},
    {"the end of a group ends any message", "KCellularLteRrcState", "08 01 0c 10 03",
     {true, "[timestamp: 1]"}},
    {"the start of a group at a known field is read by the field's rule", "KCellularLteRrcState",
     "0b 05", {true, "[timestamp: 5]"}},

    {"sint32: 1 is -1", "TxPowerInfo", "08 01", {true, "[pucch_tx_power: -1]"}},
    {"sint32: 2 is 1", "TxPowerInfo", "08 02", {true, "[pucch_tx_power: 1]"}},
    {"sint32: 0xFFFFFFFF is 0", "TxPowerInfo", "08 ff ff ff ff 0f", {true, "[pucch_tx_power: 0]"}},
    {"sint32: 0xFFFFFFFE is -1", "TxPowerInfo", "08 fe ff ff ff 0f",
     {true, "[pucch_tx_power: -1]"}},
    {"sint32: 0x7FFFFFFF is the lowest", "TxPowerInfo", "08 ff ff ff ff 07",
     {true, "[pucch_tx_power: -1073741824]"}},
    {"sint32: 0x80000000 shifts its sign in", "TxPowerInfo", "08 80 80 80 80 08",
     {true, "[pucch_tx_power: -1073741824]"}},
    {"sint32 keeps the low 32 bits", "TxPowerInfo", "08 81 80 80 80 10",
     {true, "[pucch_tx_power: -1]"}},

    {"bool: any number but 0 is true", "KCellularWcdmaRrcConfiguration", "18 80 02 20 00",
     {true, "[is_mimo_configured: 1, is_dc_configured: 0]"}},
    {"bool: cut short is false", "KCellularWcdmaRrcConfiguration", "18 81",
     {false, "[is_mimo_configured: 0]"}},

    {"empty bytes are present", "KCellularMmCommonInfo", "12 00", {true, "[imsi: <>]"}},
    {"the last bytes given count", "KCellularMmCommonInfo", "12 01 0a 12 02 0b 0c",
     {true, "[imsi: <0b0c>]"}},
    {"truncated bytes are absent", "KCellularMmCommonInfo", "08 01 12 03 0a 0b",
     {false, "[timestamp: 1]"}},
    {"a huge length is malformed", "KCellularMmCommonInfo",
     "12 ff ff ff ff ff ff ff ff ff 01 0a", {false, "[:]"}},
    {"an over-long length is 0", "KCellularMmCommonInfo",
     "12 80 80 80 80 80 80 80 80 80 80 08 01", {true, "[timestamp: 1, imsi: <>]"}},
    {"empty text is present", "KCellularLteRsrpRsrqSinr", "1a 00", {true, "[call_id: ]"}},
    {"text that is not UTF-8 is shown with U+FFFD", "KCellularLteRsrpRsrqSinr", "1a 03 61 ff 62",
     {true, "[call_id: a\xef\xbf\xbd" "b]"}},
    {"truncated text is absent", "KCellularLteRsrpRsrqSinr", "1a 03 61", {false, "[:]"}},

    {"a nested message is a dictionary", "KCellularEmmContext", "32 04 08 05 10 06",
     {true, "[guti: [mmegi: 5, mmec: 6]]"}},
    {"an empty nested message is present", "KCellularEmmContext", "32 00", {true, "[guti: [:]]"}},
    {"a second singular nested message replaces the first", "KCellularEmmContext",
     "32 02 08 05 32 02 10 06", {true, "[guti: [mmec: 6]]"}},
    {"a nested length beyond the end is malformed, and what was made stays",
     "KCellularEmmContext", "08 01 32 05 08 05", {false, "[timestamp: 1, guti: [:]]"}},
    {"a nested failure ends the outer message", "KCellularEmmContext", "32 01 08 08 01",
     {false, "[guti: [mmegi: 0]]"}},
    {"after the end of a group in a nested message its rest is read by the outer one",
     "KCellularEmmContext", "32 05 08 05 0c 08 09 48 07",
     {true, "[timestamp: 9, guti: [mmegi: 5], t3412_dur_s: 7]"}},
    {"a repeated message has one element a key", "KCellularLteCarrierAggregationStatus",
     "12 02 08 00 12 02 08 01", {true, "[scc_list: [[index: 0], [index: 1]]]"}},
    {"elements before a failure stay", "KCellularLteCarrierAggregationStatus",
     "12 02 08 00 12 02 08 80 08 01", {false, "[scc_list: [[index: 0], [index: 0]]]"}},

    {"packed numbers", "KCellularLteSelReselCellInfo", "12 03 01 80 01",
     {true, "[multi_band_info: [1, 128]]"}},
    {"a packed field that arrives unpacked has one element a key", "KCellularLteSelReselCellInfo",
     "10 01 10 02", {true, "[multi_band_info: [1, 2]]"}},
    {"packed and unpacked mix", "KCellularLteSelReselCellInfo", "10 01 12 02 02 03",
     {true, "[multi_band_info: [1, 2, 3]]"}},
    {"an empty packed field leaves no key", "KCellularLteSelReselCellInfo", "12 00", {true, "[:]"}},
    {"a packed field cut short keeps a 0", "KCellularLteSelReselCellInfo", "12 02 01 80",
     {false, "[multi_band_info: [1, 0]]"}},
    {"a packed length beyond the end is malformed", "KCellularLteSelReselCellInfo", "12 05 01",
     {false, "[:]"}},
    {"packed sint32", "KCellularGsmCsRfMeasurement", "2a 03 01 02 04",
     {true, "[cs_tx_pwr: [-1, 1, 2]]"}},
    {"packed sint32 unpacked", "KCellularGsmCsRfMeasurement", "28 01",
     {true, "[cs_tx_pwr: [-1]]"}},
    {"packed sint32 of another wire type is one varint", "KCellularGsmCsRfMeasurement", "2d 03",
     {true, "[cs_tx_pwr: [-2]]"}},

    {"an unknown varint is skipped", "KCellularLteRrcState", "78 80 01 08 01",
     {true, "[timestamp: 1]"}},
    {"an unknown 64-bit value is skipped", "KCellularLteRrcState",
     "79 01 02 03 04 05 06 07 08 08 01", {true, "[timestamp: 1]"}},
    {"an unknown 32-bit value is skipped", "KCellularLteRrcState", "7d 01 02 03 04 08 01",
     {true, "[timestamp: 1]"}},
    {"unknown bytes are skipped", "KCellularLteRrcState", "7a 02 01 02 08 01",
     {true, "[timestamp: 1]"}},
    {"an unknown group is skipped with what is nested in it", "KCellularLteRrcState",
     "7b 08 01 7b 7d 01 02 03 04 7c 7a 01 ff 7c 08 01", {true, "[timestamp: 1]"}},
    {"an unterminated group is malformed", "KCellularLteRrcState", "7b 08 01", {false, "[:]"}},
    {"a group ended by another number is malformed", "KCellularLteRrcState", "7b 84 01 08 01",
     {false, "[:]"}},
    {"wire type 6 is malformed", "KCellularLteRrcState", "08 01 7e 01", {false, "[timestamp: 1]"}},
    {"wire type 7 is malformed", "KCellularLteRrcState", "7f 01", {false, "[:]"}},
    {"an unknown varint cut short is malformed", "KCellularLteRrcState", "78 80", {false, "[:]"}},
    {"an unknown 64-bit value cut short is malformed", "KCellularLteRrcState", "79 01 02",
     {false, "[:]"}},
    {"an unknown 32-bit value cut short is malformed", "KCellularLteRrcState", "7d 01 02 03",
     {false, "[:]"}},
    {"unknown bytes cut short are malformed", "KCellularLteRrcState", "7a 03 01 02", {false, "[:]"}},

    {"the secondary cell classes keep whole field numbers", "SccRxMeasurement",
     "88 80 20 2a 08 01", {true, "[index: 1]"}},
    {"and so does their list", "KCellularLteSecondaryCellMeasurements",
     "88 80 20 2a 12 06 88 80 20 2a 08 02", {true, "[scc_rx_measurement: [[index: 2]]]"}},
};
// clang-format on

TEST(Read, FollowsItsRules) {
  RecordedLog log;
  for (const Case& row : kCases) EXPECT_EQ(read(row.className, row.hex), row.expected) << row.says;
  EXPECT_THAT(log.systemLines(), IsEmpty()) << "nothing but registered tags is logged";
}

struct TagCase {
  const char* says;
  const char* className;
  const char* hex;
  Read expected;
  std::vector<std::string> log;
};

// clang-format off
const TagCase kTagCases[] = {
    {"a message's own tag as field number is logged and its varint skipped",
     "KCellularLteRrcState", "a0 e0 09 05 08 01", {true, "[timestamp: 1]"},
     {"valid metricId tag", "Unknown tag: 4e04:5"}},
    {"only the value's low 32 bits are logged", "KCellularLteRrcState",
     "a0 e0 09 ff ff ff ff ff ff ff ff ff 01", {true, "[:]"},
     {"valid metricId tag", "Unknown tag: 4e04:4294967295"}},
    {"behind a tag one varint is read whatever the wire type, and a body is read as keys",
     "KCellularLteRrcState", "a2 e0 09 02 08 07", {true, "[timestamp: 7]"},
     {"valid metricId tag", "Unknown tag: 4e04:2"}},
    {"a tag without a value", "KCellularLteRrcState", "a0 e0 09", {false, "[:]"},
     {"valid metricId tag", "Unknown tag: 4e04:0"}},
    {"the registry is asked before the fields, so reselection's field 19 is never read back",
     "KCellularLteSelReselCellInfo", "90 01 04 98 01 05 a0 01 06",
     {true, "[Thresh_serving_lowP: 4, priority_operating_freq: 6]"},
     {"valid metricId tag", "Unknown tag: 13:5"}},
    {"nor is the idle configuration's", "KCellularGsmIdleConfig", "90 01 04 98 01 05 a0 01 06",
     {true, "[c2_valid: 4, tmp_offset: 6]"}, {"valid metricId tag", "Unknown tag: 13:5"}},
    {"a nested message asks the registry, too", "KCellularEmmContext", "32 05 98 01 05 08 06",
     {true, "[guti: [mmegi: 6]]"}, {"valid metricId tag", "Unknown tag: 13:5"}},
    {"a field number is cut before the registry is asked", "KCellularLteRrcState",
     "98 81 20 05 08 01", {true, "[timestamp: 1]"}, {"valid metricId tag", "Unknown tag: 13:5"}},
    {"the secondary cell classes do not ask the registry", "KCellularLteSecondaryCellMeasurements",
     "98 01 05 12 05 98 01 05 08 02", {true, "[scc_rx_measurement: [[index: 2]]]"}, {}},
    {"0xD317 is no registered tag", "KCellularLteRrcState", "b8 99 0d 05 08 01",
     {true, "[timestamp: 1]"}, {}},
};
// clang-format on

TEST(Read, AsksTheTagRegistryFirst) {
  for (const TagCase& row : kTagCases) {
    RecordedLog log;
    EXPECT_EQ(read(row.className, row.hex), row.expected) << row.says;
    EXPECT_EQ(log.systemLines(), row.log) << row.says;
  }
}

/// A varint of a number below 2^14.
std::string varint(unsigned value) {
  std::vector<std::uint8_t> out;
  for (; value >= 0x80; value >>= 7) out.push_back(static_cast<std::uint8_t>(value | 0x80));
  out.push_back(static_cast<std::uint8_t>(value));
  return hexText(out);
}

/// A field's payload in the wire type of its kind, and how the dictionary prints it.
std::pair<std::string, std::string> sampleOf(const FieldFact& fact) {
  const auto key = [&](unsigned wireType) { return varint(fact.number << 3 | wireType); };
  if (fact.type == "bytes") return {key(2) + "02abcd", "<abcd>"};
  if (fact.type == "string") return {key(2) + "026f6b", "ok"};
  if (fact.type == "sint32") return {key(0) + "09", "-5"};
  if (fact.type == "bool") return {key(0) + "01", "1"};
  if (fact.type == "int32") return {key(0) + "d804", "(unknown: 600)"};
  if (fact.type == "packed repeated uint32") return {key(2) + "020901", "[9, 1]"};
  if (fact.type == "packed repeated sint32") return {key(2) + "020902", "[-5, 1]"};
  if (fact.type.starts_with("message ")) return {key(2) + "00", "[:]"};
  if (fact.type.starts_with("repeated message ")) return {key(2) + "00", "[[:]]"};
  return {key(0) + "ac02", "300"};
}

TEST(Read, FillsEveryFieldUnderItsKeyAndWritesItBack) {
  RecordedLog log;
  for (const FieldFact& fact : fieldFacts()) {
    SCOPED_TRACE(fact.className + "." + fact.property);
    const auto [hex, value] = sampleOf(fact);
    const auto message = catalogueRow(fact.className)->table->make();
    ASSERT_TRUE(message->initWithData(make<Data>(bytes(hex))));
    const bool registered = fact.number == 19;
    EXPECT_EQ(printed(message->dictionaryRepresentation()),
              registered ? "[:]" : "[" + fact.key + ": " + value + "]");
    PBDataWriter writer;
    message->writeTo(writer);
    EXPECT_EQ(hexText(writer.bytes()), registered ? "" : hex);
  }
}

TEST(Read, AddsToWhatTheMessageHolds) {
  KCellularLteRrcState message;
  message.setPrevState(3);
  ASSERT_TRUE(message.initWithData(data("08 05")));
  EXPECT_EQ(printed(message.dictionaryRepresentation()),
            "[timestamp: 5, prev_state: KLTE_RRC_STATE_CONNECTED]");
}

TEST(Read, TakesNullBytesForNone) {
  KCellularLteRrcState message;
  EXPECT_TRUE(message.initWithData(nullptr));
  EXPECT_TRUE(message.dictionaryRepresentation().empty());
}

TEST(Read, LeavesInvalidUtf8AsItCame) {
  KCellularLteRsrpRsrqSinr message;
  ASSERT_TRUE(message.initWithData(data("1a 03 61 ff 62")));
  EXPECT_EQ(message.callId()->text(),
            "a\xff"
            "b");
}

TEST(Read, SkipsGroupsOfAnyDepthWithoutRecursion) {
  std::vector<std::uint8_t> payload(2'000'000, 0x7b);
  payload.resize(4'000'000, 0x7c);
  KCellularLteRrcState message;
  EXPECT_TRUE(message.initWithData(make<Data>(payload)));
  payload.pop_back();
  EXPECT_FALSE(message.initWithData(make<Data>(payload)));
}

TEST(Read, NeverReadsPastTheEndWhereverAPayloadIsCut) {
  RecordedLog log;
  for (const FieldFact& fact : fieldFacts()) {
    const auto whole = bytes(sampleOf(fact).first + "08ffffffffffffffffff01");
    for (std::size_t length = 0; length < whole.size(); ++length) {
      const auto message = catalogueRow(fact.className)->table->make();
      (void)message->initWithData(make<Data>(Bytes(whole).first(length)));
      (void)message->dictionaryRepresentation();
    }
  }
}

}  // namespace
}  // namespace quorin::test
