#include "platform/baseband/Loopback.h"

#include <thread>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A manager of the loopback whose metric handler notes what it is given.
struct Listener {
  dispatch_queue_t queue = dispatch_queue_create("listener");
  std::shared_ptr<osmin::client::Manager> manager = osmin::client::CreateManager("any", queue);
  std::vector<std::string> events;
  std::vector<std::thread::id> threads;

  void listen(const char* kind = osmin::kEventMetric) {
    osmin::client::RegisterEventHandler(manager, kind, noting(""));
    osmin::client::EventsOn(manager);
  }
  osmin::EventHandler noting(const std::string& prefix) {
    return [this, prefix](xpc_object_t event, const dispatch_group_t&) {
      std::string text = prefix;
      xpc_dictionary_apply(event, [&](const std::string& key, xpc_object_t value) {
        text += key + "=" + shown(value) + " ";
      });
      events.push_back(text);
      threads.push_back(std::this_thread::get_id());
    };
  }
  [[nodiscard]] std::vector<std::string> noted() {
    waitUntilDone(*queue);
    return std::exchange(events, {});
  }
  osmin::CommandResult perform(const char* command,
                               std::vector<std::pair<const char*, std::int64_t>> keys) {
    const XpcRef input(xpc_dictionary_create(nullptr, nullptr, 0));
    for (const auto& [key, value] : keys)
      xpc_dictionary_set_value(input.get(), key, XpcRef(xpc_int64_create(value)).get());
    xpc_object_t output = nullptr;
    return osmin::client::PerformCommand(manager, command, input.get(), &output);
  }
};

XpcRef numbered(int n) { return eventOf("n", XpcRef(xpc_int64_create(n)).get()); }

TEST(Loopback, DeliversToAHandlerOnceEventsAreOnOnTheManagersQueue) {
  Loopback loopback;
  loopback.install();
  Listener listener;
  loopback.deliver(osmin::kEventMetric, numbered(1));
  osmin::client::RegisterEventHandler(listener.manager, osmin::kEventMetric, listener.noting(""));
  loopback.deliver(osmin::kEventMetric, numbered(2));
  osmin::client::EventsOn(listener.manager);
  loopback.deliver(osmin::kEventMetric, numbered(3));
  loopback.deliver(osmin::kEventTrigger, numbered(4));
  osmin::client::EventsOff(listener.manager);
  loopback.deliver(osmin::kEventMetric, numbered(5));
  EXPECT_THAT(listener.noted(), ElementsAre("n=int64 3 "));
  ASSERT_EQ(listener.threads.size(), 1U);
  EXPECT_NE(listener.threads[0], std::this_thread::get_id());
}

TEST(Loopback, ReplacesAHandlerThatIsRegisteredTwice) {
  Loopback loopback;
  loopback.install();
  Listener listener;
  listener.listen();
  osmin::client::RegisterEventHandler(listener.manager, osmin::kEventMetric,
                                      listener.noting("second "));
  loopback.deliver(osmin::kEventMetric, numbered(1));
  EXPECT_THAT(listener.noted(), ElementsAre("second n=int64 1 "));
}

TEST(Loopback, DeliversToEveryManagerThatListens) {
  Loopback loopback;
  loopback.install();
  Listener first;
  Listener second;
  first.listen();
  second.listen(osmin::kEventTrigger);
  loopback.deliver(osmin::kEventMetric, numbered(1));
  loopback.deliver(osmin::kEventTrigger, numbered(2));
  EXPECT_THAT(first.noted(), ElementsAre("n=int64 1 "));
  EXPECT_THAT(second.noted(), ElementsAre("n=int64 2 "));
}

TEST(Loopback, AcceptsEveryConfiguration) {
  Loopback loopback;
  loopback.install();
  Listener listener;
  EXPECT_EQ(listener.perform(osmin::kCommandAddConfiguration, {}).status, 0);
  EXPECT_EQ(listener.perform(osmin::kCommandClearConfiguration, {}).status, 0);
  EXPECT_EQ(listener.perform(osmin::kCommandQueryMetric, {}).status, 0);
}

TEST(Loopback, DoesNotCarryOutACommandWhoseInputIsNoDictionary) {
  Loopback loopback;
  loopback.install();
  const Listener listener;
  const XpcRef null(xpc_null_create());
  xpc_object_t output = nullptr;
  for (const xpc_object_t input : {null.get(), xpc_object_t{nullptr}}) {
    const auto result = osmin::client::PerformCommand(
        listener.manager, osmin::kCommandAddConfiguration, input, &output);
    EXPECT_EQ(result.status, osmin::kStatusNotCarriedOut);
    EXPECT_FALSE(result.message.empty());
  }
}

TEST(Loopback, AnswersAQueryWithTheLatestEventOfTheMetric) {
  Loopback loopback;
  loopback.install();
  Listener listener;
  listener.listen();
  loopback.deliver(osmin::kEventMetric, metricEvent(0x3C0013, "01"));
  loopback.deliver(osmin::kEventMetric, metricEvent(0x3C0013, "02"));
  loopback.deliver(osmin::kEventMetric, metricEvent(0x3C4E04, "03"));
  EXPECT_EQ(listener.noted().size(), 3U);
  const char* sim = "kKeyMetricID=int64 3932179 kKeyPayload=data <02> kKeyProfileID=int64 0 ";
  EXPECT_EQ(listener
                .perform(osmin::kCommandQueryMetric,
                         {{osmin::kKeyTriggerID, 0x7F0013}, {osmin::kKeyMetricID, 0}})
                .status,
            0);
  EXPECT_THAT(listener.noted(), ElementsAre(sim)) << "by the tag in the trigger ID";
  EXPECT_EQ(listener
                .perform(osmin::kCommandQueryMetric,
                         {{osmin::kKeyTriggerID, 1}, {osmin::kKeyMetricID, 0x3C0013}})
                .status,
            0);
  EXPECT_THAT(listener.noted(), ElementsAre(sim)) << "by the metric ID";
  EXPECT_EQ(listener.perform(osmin::kCommandQueryMetric, {{osmin::kKeyTriggerID, 0x7FD30E}}).status,
            0);
  EXPECT_THAT(listener.noted(), IsEmpty()) << "a metric that never came";
}

TEST(Loopback, ForgetsAManagerThatIsGone) {
  Loopback loopback;
  loopback.install();
  auto listener = std::make_unique<Listener>();
  listener->listen();
  const std::weak_ptr<osmin::client::Manager> manager = listener->manager;
  listener->manager.reset();
  EXPECT_TRUE(manager.expired());
  loopback.deliver(osmin::kEventMetric, numbered(1));
  EXPECT_THAT(listener->noted(), IsEmpty());
}

TEST(Loopback, TellsWhenEveryHandlerHasReturned) {
  Loopback loopback;
  loopback.install();
  Listener listener;
  listener.listen();
  EXPECT_EQ(loopback.pending(), 0U);
  loopback.deliver(osmin::kEventMetric, numbered(1));
  loopback.deliver(osmin::kEventMetric, numbered(2));
  EXPECT_EQ(listener.noted().size(), 2U);
  EXPECT_EQ(loopback.pending(), 0U);
}

}  // namespace
}  // namespace quorin::test
