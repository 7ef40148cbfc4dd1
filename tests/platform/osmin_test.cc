#include "platform/baseband/osmin.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(OsminClient, HasNoManagerWithoutAWayToTheService) {
  osmin::client::setManagerFactory(nullptr);
  EXPECT_FALSE(osmin::client::CreateManager("any", nullptr));
}

TEST(OsminClient, DoesNotCarryOutCommandsWithoutAManager) {
  xpc_object_t output = nullptr;
  const auto result = osmin::client::PerformCommand(nullptr, "any", nullptr, &output);
  EXPECT_EQ(result.status, -534716414);
  EXPECT_EQ(result.message, "no baseband manager");
  osmin::client::RegisterEventHandler(nullptr, "any", nullptr);
  osmin::client::EventsOff(nullptr);
  osmin::client::EventsOn(nullptr);
}

TEST(OsminConstants, AreTheirOwnNames) {
  EXPECT_STREQ(osmin::kCommandAddConfiguration, "kCommandAddConfiguration");
  EXPECT_STREQ(osmin::kCommandClearConfiguration, "kCommandClearConfiguration");
  EXPECT_STREQ(osmin::kCommandQueryMetric, "kCommandQueryMetric");
  EXPECT_STREQ(osmin::kEventMetric, "kEventMetric");
  EXPECT_STREQ(osmin::kEventTrigger, "kEventTrigger");
  EXPECT_STREQ(osmin::kKeyAppID, "kKeyAppID");
  EXPECT_STREQ(osmin::kKeyMetricID, "kKeyMetricID");
  EXPECT_STREQ(osmin::kKeyPayload, "kKeyPayload");
  EXPECT_STREQ(osmin::kKeyPayloadType, "kKeyPayloadType");
  EXPECT_STREQ(osmin::kKeyProfileID, "kKeyProfileID");
  EXPECT_STREQ(osmin::kKeyTriggerID, "kKeyTriggerID");
  EXPECT_STREQ(osmin::kKeyTriggerRef, "kKeyTriggerRef");
  EXPECT_STREQ(osmin::kKeyTriggerType, "kKeyTriggerType");
}

}  // namespace
}  // namespace quorin::test
