#include "basebandd/Service.h"

#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Takes so many events, and then none until the test makes room.
class ScriptedChannel final : public EventChannel {
 public:
  [[nodiscard]] bool isReady() const override { return room > 0; }
  void send(std::uint64_t sequence, const char* kind, const XpcRef& event) override {
    --room;
    EXPECT_STREQ(kind, osmin::kEventMetric);
    const auto id = xpc_int64_get_value(xpc_dictionary_get_value(event.get(), osmin::kKeyMetricID));
    const Bytes payload =
        xpc_data_get_bytes(xpc_dictionary_get_value(event.get(), osmin::kKeyPayload));
    EXPECT_EQ(shown(xpc_dictionary_get_value(event.get(), osmin::kKeyProfileID)), "int64 0");
    char text[64];
    std::snprintf(text, sizeof text, "%d: %lX ", static_cast<int>(sequence), static_cast<long>(id));
    sent.push_back(text + hexText(payload));
  }
  std::vector<std::string> take() { return std::exchange(sent, {}); }

  int room = 1000;
  std::vector<std::string> sent;
};

XpcRef commandInput(std::initializer_list<std::pair<const char*, xpc_object_t>> entries) {
  XpcRef input(xpc_dictionary_create(nullptr, nullptr, 0));
  for (const auto& [key, value] : entries)
    xpc_dictionary_set_value(input.get(), key, XpcRef(value).get());
  return input;
}

XpcRef configuration(std::string_view text) {
  return commandInput({{osmin::kKeyAppID, xpc_int64_create(2)},
                       {osmin::kKeyPayload, xpc_data_create(text.data(), text.size())},
                       {osmin::kKeyPayloadType, xpc_int64_create(0)}});
}

struct Rig {
  osmin::CommandResult perform(const char* command, const XpcRef& input) {
    return service.perform(":1.1", command, input);
  }
  void configure(std::string_view text) {
    ASSERT_EQ(perform(osmin::kCommandAddConfiguration, configuration(text)).status, 0);
  }
  void switchOn() { service.eventsOn(":1.1", channel); }
  void metric(std::int64_t id, std::string_view payload) {
    std::string reason;
    EXPECT_TRUE(service.takeMetric(id, make<Data>(bytes(payload)), reason)) << reason;
  }
  osmin::CommandResult query(std::int64_t metricID, std::int64_t triggerID) {
    return perform(osmin::kCommandQueryMetric,
                   commandInput({{osmin::kKeyAppID, xpc_int64_create(2)},
                                 {osmin::kKeyTriggerID, xpc_int64_create(triggerID)},
                                 {osmin::kKeyMetricID, xpc_int64_create(metricID)}}));
  }

  VirtualClock clock;
  Service service;
  std::shared_ptr<ScriptedChannel> channel = std::make_shared<ScriptedChannel>();
};

constexpr char kRrcState[] = "[metrics]\nK_LTE_RRC_STATE = \"on change\"\n";
constexpr char kTxPower[] = "[metrics]\nK_LTE_TX_POWER = 1000\n";

TEST(Service, DeliversWhatWasAskedForOnceItsEventsAreOn) {
  Rig rig;
  rig.configure(kRrcState);
  rig.metric(K_LTE_RRC_STATE, "01");
  EXPECT_THAT(rig.channel->take(), IsEmpty());
  rig.switchOn();
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 01")) << "the current value, once";
  rig.metric(K_LTE_RRC_STATE, "02");
  rig.metric(K_LTE_TX_POWER, "03");
  EXPECT_THAT(rig.channel->take(), ElementsAre("2: 3C4E04 02"));
  rig.service.eventsOff(":1.1");
  rig.metric(K_LTE_RRC_STATE, "04");
  EXPECT_THAT(rig.channel->take(), IsEmpty());
  rig.switchOn();
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 04")) << "numbered anew";
}

TEST(Service, LeavesOutWhatDidNotChange) {
  Rig rig;
  rig.configure(kRrcState);
  rig.switchOn();
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.metric(K_LTE_RRC_STATE, "02");
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 01", "2: 3C4E04 02"));
}

TEST(Service, SendsTheNewestAtMostOnceAPeriod) {
  Rig rig;
  rig.configure(kTxPower);
  rig.switchOn();
  rig.metric(K_LTE_TX_POWER, "01");
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3CD302 01"));
  rig.clock.advance(Milliseconds{400});
  rig.metric(K_LTE_TX_POWER, "02");
  rig.metric(K_LTE_TX_POWER, "03");
  EXPECT_THAT(rig.channel->take(), IsEmpty());
  EXPECT_EQ(rig.service.nextDelivery(), Milliseconds{1000});
  rig.clock.advance(Milliseconds{600});
  rig.service.deliver();
  EXPECT_THAT(rig.channel->take(), ElementsAre("2: 3CD302 03"));
  EXPECT_EQ(rig.service.sessions().at(0).dropped, 0U) << "as asked for";
  EXPECT_EQ(rig.service.nextDelivery(), std::nullopt);
}

TEST(Service, KeepsTheNewestOfEachMetricForASlowClientAndCountsTheDrops) {
  Rig rig;
  rig.configure("[metrics]\nK_LTE_RRC_STATE = \"on change\"\nK_LTE_SCELL_INFO = \"on change\"\n");
  rig.switchOn();
  rig.channel->room = 1;
  for (const char* payload : {"01", "02", "03", "04"}) rig.metric(K_LTE_RRC_STATE, payload);
  rig.metric(K_LTE_SCELL_INFO, "05");
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 01"));
  const SessionStatus held = rig.service.sessions().at(0);
  EXPECT_EQ(held.waiting, 2U);
  EXPECT_EQ(held.dropped, 2U);
  rig.channel->room = 10;
  rig.service.deliver();
  EXPECT_THAT(rig.channel->take(), ElementsAre("4: 3C4E04 04", "5: 3C40C2 05"))
      << "2 and 3 are the gap";
}

TEST(Service, AnswersAQueryAtOnceWithTheCurrentValueWhateverIsConfigured) {
  Rig rig;
  rig.metric(K_SIM_FILE_INFO, "01");
  rig.switchOn();
  EXPECT_EQ(rig.query(0, 0x7F0013).status, 0) << "the tag stands in the trigger ID's low 16 bits";
  EXPECT_EQ(rig.query(K_SIM_FILE_INFO, 0).status, 0);
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C0013 01", "2: 3C0013 01"));
}

TEST(Service, SaysWhyAQueryYieldsNothing) {
  Rig rig;
  rig.switchOn();
  const auto unknown = rig.query(K_LTE_RLF, 0);
  EXPECT_EQ(unknown.status, Service::kNoValue);
  EXPECT_EQ(unknown.message, "the metric has no value yet");
}

TEST(Service, ClearsWhatWasConfiguredAndSucceedsWhereNothingWas) {
  Rig rig;
  const XpcRef input = commandInput({{osmin::kKeyAppID, xpc_int64_create(2)}});
  EXPECT_EQ(rig.perform(osmin::kCommandClearConfiguration, input).status, 0);
  rig.configure(kRrcState);
  rig.switchOn();
  EXPECT_EQ(rig.perform(osmin::kCommandClearConfiguration, input).status, 0);
  rig.metric(K_LTE_RRC_STATE, "01");
  EXPECT_THAT(rig.channel->take(), IsEmpty());
}

TEST(Service, RefusesWhatItDoesNotUnderstandAndKeepsTheConfigurationThatItHas) {
  Rig rig;
  rig.configure(kRrcState);
  rig.switchOn();
  const auto refused = [&](const char* command, const XpcRef& input) {
    const auto result = rig.perform(command, input);
    return std::to_string(result.status) + " " + result.message;
  };
  const XpcRef none = commandInput({});
  const XpcRef app = commandInput({{osmin::kKeyAppID, xpc_int64_create(2)}});
  EXPECT_EQ(refused("kCommandNonsense", app), "1 there is no command kCommandNonsense");
  EXPECT_EQ(refused(osmin::kCommandAddConfiguration, XpcRef()), "2 the input is no dictionary");
  EXPECT_EQ(refused(osmin::kCommandAddConfiguration, none), "2 kKeyAppID is no integer");
  EXPECT_EQ(refused(osmin::kCommandAddConfiguration, app), "2 kKeyPayload holds no bytes");
  EXPECT_EQ(refused(osmin::kCommandAddConfiguration, configuration("[metrics]\nK_X = 1\n")),
            "3 line 2: K_X is no metric");
  EXPECT_EQ(refused(osmin::kCommandQueryMetric, app), "2 kKeyMetricID is no integer");
  rig.metric(K_LTE_RRC_STATE, "01");
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 01"));
}

TEST(Service, KeepsSessionsApart) {
  Rig rig;
  rig.configure(kRrcState);
  rig.switchOn();
  const auto other = std::make_shared<ScriptedChannel>();
  ASSERT_EQ(
      rig.service.perform(":1.2", osmin::kCommandAddConfiguration, configuration(kTxPower)).status,
      0);
  rig.service.eventsOn(":1.2", other);
  rig.channel->room = 0;
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.metric(K_LTE_TX_POWER, "02");
  EXPECT_THAT(other->take(), ElementsAre("1: 3CD302 02")) << "a slow session holds up no other";
  rig.service.sessionGone(":1.2");
  EXPECT_EQ(rig.service.sessions().size(), 1U);
}

TEST(Service, RefusesWhatItCouldNotHoldForEver) {
  Rig rig;
  std::string reason;
  EXPECT_FALSE(rig.service.takeMetric(7, make<Data>(bytes("01")), reason));
  EXPECT_EQ(reason, "no metric has the ID 7");
  const std::vector<std::uint8_t> longest(Service::kMostPayloadBytes);
  EXPECT_TRUE(rig.service.takeMetric(K_SIM_FILE_INFO, make<Data>(longest), reason));
  const std::vector<std::uint8_t> longer(Service::kMostPayloadBytes + 1);
  EXPECT_FALSE(rig.service.takeMetric(K_SIM_FILE_INFO, make<Data>(longer), reason));
  EXPECT_EQ(reason, "a payload of more than 65536 bytes");
  EXPECT_EQ(rig.service.metrics().size(), 1U);
  EXPECT_EQ(rig.service.metrics()[0].count, 1U);
}

TEST(Service, RepeatsOnlyTheBeginningOfALongCommand) {
  Rig rig;
  const auto answered = [&](const std::string& command) {
    return rig.perform(command.c_str(), commandInput({})).message;
  };
  EXPECT_EQ(answered(std::string(64, 'x')), "there is no command " + std::string(64, 'x'));
  EXPECT_EQ(answered(std::string(1'000'000, 'x')),
            "there is no command " + std::string(64, 'x') + "...");
  EXPECT_EQ(answered(std::string(63, 'x') + "\u20ac\u20ac"),
            "there is no command " + std::string(63, 'x') + "...")
      << "whole characters";
  EXPECT_EQ(answered("a\nb\x1b[1m"), "there is no command a?b?[1m") << "one line";
}

TEST(Service, TellsHowItsMetricsStand) {
  Rig rig;
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.clock.advance(Milliseconds{1500});
  const auto metrics = rig.service.metrics();
  ASSERT_EQ(metrics.size(), 1U);
  EXPECT_EQ(metrics[0].id, K_LTE_RRC_STATE);
  EXPECT_EQ(metrics[0].count, 2U);
  EXPECT_EQ(metrics[0].age, Milliseconds{1500});
}

TEST(Service, KeepsAStaleValueToItself) {
  Rig rig;
  bool isStale = true;
  rig.service.setIsStale([&](std::int64_t id) { return isStale && id == K_LTE_RRC_STATE; });
  rig.configure(kRrcState);
  rig.metric(K_LTE_RRC_STATE, "01");
  rig.switchOn();
  EXPECT_THAT(rig.channel->take(), IsEmpty());
  const auto answer = rig.query(K_LTE_RRC_STATE, 0);
  EXPECT_EQ(answer.status, Service::kNoValue);
  EXPECT_EQ(answer.message, "the metric's value is stale");
  isStale = false;
  EXPECT_EQ(rig.query(K_LTE_RRC_STATE, 0).status, 0);
  EXPECT_THAT(rig.channel->take(), ElementsAre("1: 3C4E04 01"));
}

}  // namespace
}  // namespace quorin::test
