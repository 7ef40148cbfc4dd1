#include "platform/baseband/EventRecord.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

/// The record of an event, given back when this ends.
class Converted {
 public:
  explicit Converted(xpc_object_t event) : _record(_CFXPCCreateCFObjectFromXPCObject(event)) {}
  ~Converted() {
    if (_record) _record->release();
  }
  Converted(const Converted&) = delete;
  Converted& operator=(const Converted&) = delete;
  const EventRecord* operator->() const { return _record; }
  explicit operator bool() const { return _record != nullptr; }

 private:
  const EventRecord* _record;
};

TEST(EventRecord, HoldsEveryKindOfEntryInTheEventsOrder) {
  const XpcRef event(xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, xpc_object_t value) {
    xpc_dictionary_set_value(event.get(), key, XpcRef(value).get());
  };
  const auto content = bytes("0a ff");
  const char* innerKey = "inner";
  const XpcRef innerValue(xpc_int64_create(-7));
  const xpc_object_t innerValues[] = {innerValue.get()};
  set("kKeyTriggerID", xpc_int64_create(INT64_MAX));
  set("kKeyMetricID", xpc_int64_create(INT64_MIN));
  set("a key of its own", xpc_string_create("text"));
  set("kKeyPayload", xpc_data_create(content.data(), content.size()));
  set("empty", xpc_data_create(nullptr, 0));
  set("", xpc_string_create(""));
  set("yes", xpc_bool_create(true));
  set("real", xpc_double_create(-0.5));
  set("none", xpc_null_create());
  set("nested", xpc_dictionary_create(&innerKey, innerValues, 1));
  const Converted record(event.get());
  ASSERT_TRUE(record);
  const Dictionary entries = record->dictionary();
  EXPECT_EQ(
      printed(entries),
      "[kKeyTriggerID: 9223372036854775807, kKeyMetricID: -9223372036854775808, a key of its "
      "own: text, kKeyPayload: <0aff>, empty: <>, : , yes: 1, real: -0.5, none: null, nested: "
      "[inner: -7]]");
  EXPECT_EQ(entries.find("kKeyTriggerID")->kind(), Value::Kind::int64);
  EXPECT_EQ(entries.find("kKeyPayload")->kind(), Value::Kind::data);
  EXPECT_EQ(entries.find("yes")->kind(), Value::Kind::boolean);
  EXPECT_EQ(entries.find("real")->kind(), Value::Kind::float64);
  EXPECT_EQ(entries.find("none")->kind(), Value::Kind::nothing);
}

TEST(EventRecord, OutlivesItsEvent) {
  auto event = std::make_unique<XpcRef>(metricEvent(5, "01 02"));
  const Converted record(event->get());
  event.reset();
  EXPECT_EQ(printed(record->dictionary()),
            "[kKeyMetricID: 5, kKeyPayload: <0102>, kKeyProfileID: 0]");
}

TEST(EventRecord, GivesWhatTheServiceSendsWithAMetricAndZerosBehindThePayload) {
  const Converted record(metricEvent(-5, "01 02").get());
  const auto metric = record->metric();
  ASSERT_TRUE(metric);
  EXPECT_EQ(metric->id, -5);
  EXPECT_EQ(hexText(metric->payload), "0102");
  EXPECT_EQ(metric->profileID, 0);
  EXPECT_EQ(hexText({metric->payload.data() + 2, kReadableBehind}),
            std::string(2 * kReadableBehind, '0'));
}

TEST(EventRecord, GivesNoMetricOfAnEventWithOtherEntries) {
  using Entries = std::vector<std::pair<const char*, XpcRef>>;
  const auto number = [] { return XpcRef(xpc_int64_create(1)); };
  const auto bytes = [] { return XpcRef(xpc_data_create("a", 1)); };
  const auto text = [] { return XpcRef(xpc_string_create("a")); };
  const Entries events[] = {
      {},
      {{"kKeyMetricID", number()}, {"kKeyPayload", bytes()}},
      {{"kKeyMetricID", number()}, {"kKeyProfileID", number()}},
      {{"kKeyPayload", bytes()}, {"kKeyMetricID", number()}, {"kKeyProfileID", number()}},
      {{"kKeyMetricID", text()}, {"kKeyPayload", bytes()}, {"kKeyProfileID", number()}},
      {{"kKeyMetricID", number()}, {"kKeyPayload", text()}, {"kKeyProfileID", number()}},
      {{"kKeyMetricID", number()}, {"kKeyPayload", bytes()}, {"kKeyProfileID", text()}},
      {{"kKeyMetricID", number()}, {"kKeyPayload", bytes()}, {"kKeyTriggerID", number()}},
      {{"kKeyMetricID", number()},
       {"kKeyPayload", bytes()},
       {"kKeyProfileID", number()},
       {"kKeyTriggerID", number()}},
  };
  for (const Entries& entries : events) {
    const XpcRef event(xpc_dictionary_create(nullptr, nullptr, 0));
    for (const auto& [key, value] : entries)
      xpc_dictionary_set_value(event.get(), key, value.get());
    const Converted record(event.get());
    EXPECT_FALSE(record->metric()) << printed(record->dictionary());
    EXPECT_EQ(record->dictionary().size(), entries.size());
  }
}

TEST(EventRecord, IsEmptyForAnEventWithoutEntries) {
  const Converted record(XpcRef(xpc_dictionary_create(nullptr, nullptr, 0)).get());
  ASSERT_TRUE(record);
  EXPECT_TRUE(record->dictionary().empty());
}

TEST(EventRecord, IsNoneForAnEventThatIsNoDictionary) {
  EXPECT_EQ(_CFXPCCreateCFObjectFromXPCObject(nullptr), nullptr);
  EXPECT_EQ(_CFXPCCreateCFObjectFromXPCObject(XpcRef(xpc_int64_create(1)).get()), nullptr);
  EXPECT_EQ(_CFXPCCreateCFObjectFromXPCObject(XpcRef(xpc_null_create()).get()), nullptr);
}

TEST(EventRecord, StartsWithOneReferenceAndCountsOthers) {
  const Converted record(metricEvent(5, "").get());
  EXPECT_EQ(record->references(), 1U);
  record->retain();
  EXPECT_EQ(record->references(), 2U);
  record->release();
  EXPECT_EQ(record->references(), 1U);
}

TEST(EventRecord, KeepsAtMostSixtyFourBytesBesideThePayload) {
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, std::size_t{255}, std::size_t{100000}}) {
    const std::string payload(length * 2, 'a');
    const Converted record(metricEvent(INT64_MAX, payload).get());
    EXPECT_GE(record->allocatedBytes(), length);
    EXPECT_LE(record->allocatedBytes() - length, 64U);
    EXPECT_EQ(record->dictionary().find("kKeyPayload")->data()->length(), length);
  }
}

}  // namespace
}  // namespace quorin::test
