#include "platform/text/TextScreen.h"

#include "app/interface.h"
#include "metrics/registry/metric_ids.h"
#include "platform/text/columns.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

constexpr Milliseconds kFiveSeconds{5000};

struct Launched {
  Launched() { application.launch("AppDelegate"); }

  RecordedLog log;
  VirtualClock clock;
  ScriptedService service;
  UIApplication application{interfaceDescription()};
  TextScreen screen{TextStyle{}};
};

TEST(TextScreen, PrintsAPageUnderItsKeyWhenItChanged) {
  Launched app;
  ASSERT_TRUE(app.screen.openPages(app.application, {"LTE RRC State", "LTE NAS"}).empty());
  app.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, "10 03 20 e8 07"));
  CaptureStdout();
  app.clock.advance(kFiveSeconds);
  EXPECT_EQ(GetCapturedStdout(),
            "\nLTE RRC State   last report 5 s ago\n"
            "    state              KLTE_RRC_STATE_CONNECTED\n"
            "    prev_state_dur_ms  1000\n");
  CaptureStdout();
  app.clock.advance(kFiveSeconds);
  EXPECT_EQ(GetCapturedStdout(), "") << "nothing changed";
  app.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, ""));
  CaptureStdout();
  app.clock.advance(kFiveSeconds);
  EXPECT_EQ(GetCapturedStdout(), "\nLTE RRC State   last report 5 s ago\n    No entries\n");
}

TEST(TextScreen, PrintsSectionsUnderTheirHeaders) {
  Launched app;
  ASSERT_TRUE(app.screen.openPages(app.application, {"LTE CA Status"}).empty());
  app.service.deliver(osmin::kEventMetric,
                      metricEvent(K_LTE_CA_STATUS, "12 02 08 00 12 04 08 01 18 07"));
  CaptureStdout();
  app.clock.advance(kFiveSeconds);
  EXPECT_EQ(GetCapturedStdout(),
            "\nLTE CA Status   last report 5 s ago\n"
            "  Component Carrier 0\n"
            "    index  0\n"
            "  Component Carrier 1\n"
            "    index  1\n"
            "    pci    7\n");
}

TEST(TextScreen, PrintsAllOpenedPagesOnRequest) {
  Launched app;
  ASSERT_TRUE(app.screen.openPages(app.application, {"Device Info IMSI", "GSM NAS MM"}).empty());
  CaptureStdout();
  app.screen.printAll();
  EXPECT_EQ(GetCapturedStdout(),
            "\nDevice Info IMSI\n    Come back later\n"
            "\nGSM NAS MM   never received\n    No entries\n");
}

TEST(TextScreen, OpensAllPagesAndComesBackToTheFirst) {
  Launched app;
  EXPECT_TRUE(app.screen.openPages(app.application, {}).empty());
  EXPECT_EQ(app.application.navigation().viewControllers().size(), 1U);
  CaptureStdout();
  app.screen.printAll();
  const std::string printed = GetCapturedStdout();
  std::size_t headlines = 0;
  for (std::size_t at = 0; (at = printed.find("\n\n", at)) != std::string::npos; ++at) ++headlines;
  EXPECT_EQ(headlines + 1, 43U);
}

TEST(TextScreen, GivesTheKeysThatNoPageHas) {
  Launched app;
  EXPECT_THAT(app.screen.openPages(app.application, {"LTE NAS", "NAS", "LTE nas"}),
              ElementsAre("LTE nas", "NAS"));
}

TEST(Columns, ReplaceControlCharactersAndCountCharacters) {
  EXPECT_EQ(printable("a\x1b[2J\tb\x7f"),
            "a\xef\xbf\xbd[2J\xef\xbf\xbd"
            "b\xef\xbf\xbd");
  EXPECT_EQ(printable("\xc3\xa4"), "\xc3\xa4");
  EXPECT_EQ(columnsOf("\xc3\xa4\xe2\x82\xac"
                      "b"),
            3U);
}

}  // namespace
}  // namespace quorin::test
