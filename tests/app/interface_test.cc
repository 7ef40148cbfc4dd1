#include "app/interface.h"

#include "app/AppDelegate.h"
#include "app/RootNavigationController.h"
#include "tests/support/resource_folder.h"
#include "tests/support/walk.h"
#include "viewer/FirstLevelViewController.h"
#include "viewer/QuorinViewController.h"
#include "viewer/SecondLevelViewController.h"
#include "viewer/ThirdLevelViewController.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

struct SceneRow {
  const char* className;
  const char* reuseIdentifier;
  CellStyle style;
  const char* segueTo;
};

constexpr SceneRow kScenes[] = {
    {"QuorinViewController", "LaunchView", CellStyle::basic, "FirstLevelViewController"},
    {"FirstLevelViewController", "FirstClickView", CellStyle::basic, "SecondLevelViewController"},
    {"SecondLevelViewController", "SecondClickView", CellStyle::detail, "ThirdLevelViewController"},
    {"ThirdLevelViewController", "ThirdClickView", CellStyle::basic, ""},
};

TEST(InterfaceDescription, NamesTheRootItsFirstPageAndTheDelegate) {
  const UIStoryboard& storyboard = interfaceDescription();
  EXPECT_EQ(storyboard.rootClassName, "RootNavigationController");
  EXPECT_EQ(storyboard.firstClassName, "QuorinViewController");
  ASSERT_EQ(storyboard.delegates.size(), 1U);
  EXPECT_EQ(storyboard.delegates[0].className, "AppDelegate");
  EXPECT_EQ(&interfaceDescription(), &storyboard);
}

TEST(InterfaceDescription, LeadsFromEachPageToTheNextWithOneKindOfCellEach) {
  EXPECT_EQ(interfaceDescription().scenes.size(), 5U);
  for (const SceneRow& row : kScenes) {
    const UIScene* scene = interfaceDescription().scene(row.className);
    ASSERT_TRUE(scene) << row.className;
    EXPECT_EQ(scene->cell.reuseIdentifier, row.reuseIdentifier);
    EXPECT_EQ(scene->cell.style, row.style) << row.className;
    EXPECT_EQ(scene->segueTo, row.segueTo);
  }
}

template <class Controller>
bool makes(const char* className) {
  return std::dynamic_pointer_cast<Controller>(interfaceDescription().instantiate(className)) !=
         nullptr;
}

TEST(InterfaceDescription, MakesEachPageOfItsClass) {
  const ScriptedService service;
  EXPECT_TRUE(makes<RootNavigationController>("RootNavigationController"));
  EXPECT_TRUE(makes<QuorinViewController>("QuorinViewController"));
  EXPECT_TRUE(makes<FirstLevelViewController>("FirstLevelViewController"));
  EXPECT_TRUE(makes<SecondLevelViewController>("SecondLevelViewController"));
  EXPECT_TRUE(makes<ThirdLevelViewController>("ThirdLevelViewController"));
  EXPECT_DEATH((void)interfaceDescription().instantiate("FourthLevelViewController"), "");
}

TEST(Launch, MakesTheWindowTheRootAndTheFirstPageAndStartsUp) {
  RecordedLog log;
  ScriptedService service;
  const ResourceFolder resources;
  resources.put("zef_test_lte.deviceconfig", "a");
  UIApplication application(interfaceDescription());
  application.launch("AppDelegate");

  EXPECT_TRUE(std::dynamic_pointer_cast<AppDelegate>(application.delegate()));
  const auto root = std::dynamic_pointer_cast<RootNavigationController>(
      application.delegate()->window()->rootViewController());
  ASSERT_TRUE(root);
  EXPECT_EQ(&application.navigation(), root.get());
  ASSERT_EQ(root->viewControllers().size(), 1U);
  EXPECT_TRUE(std::dynamic_pointer_cast<QuorinViewController>(root->topViewController()));
  EXPECT_TRUE(root->topViewController()->isViewLoaded());
  EXPECT_EQ(root->topViewController()->title(), "Quorin");

  EXPECT_THAT(service.clientNames(), ElementsAre("quorin"));
  EXPECT_THAT(
      service.calls(),
      ElementsAre("register kEventTrigger", "register kEventMetric", "eventsOff", "eventsOn",
                  "perform kCommandClearConfiguration kKeyAppID=int64 2",
                  "perform kCommandAddConfiguration kKeyAppID=int64 2 "
                  "kKeyPayload=data <61> kKeyPayloadType=int64 0",
                  "register kEventTrigger", "register kEventMetric", "eventsOff", "eventsOn",
                  "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 "
                  "kKeyTriggerRef=int64 9999 kKeyTriggerType=int64 0 kKeyTriggerID=int64 "
                  "8323091 kKeyProfileID=int64 0 kKeyMetricID=int64 0"));
  EXPECT_THAT(log.printedLines(), ElementsAre("pushing metric file", "Querying SIM files"));
}

TEST(Launch, ShowsAMetricThatArrivesAfterwards) {
  RecordedLog log;
  VirtualClock clock;
  ScriptedService service;
  const ResourceFolder resources;
  UIApplication application(interfaceDescription());
  application.launch("AppDelegate");
  EXPECT_THAT(log.printedLines(), ElementsAre("Metric Log File path doesnt exist"));
  const auto open = [&](std::ptrdiff_t row) {
    return selectRow(interfaceDescription(), application.navigation(), {0, row});
  };
  ASSERT_TRUE(open(1));
  const auto page = std::dynamic_pointer_cast<SecondLevelViewController>(open(1));
  ASSERT_TRUE(page);
  EXPECT_EQ(application.navigation().viewControllers().size(), 3U);
  std::string onScreen;
  page->tableView().setOnReload([&] { onScreen = contents(*page); });
  service.deliver(osmin::kEventMetric, metricEvent(0x3C4E04, "10 03"));
  clock.advance(Milliseconds(5000));
  EXPECT_EQ(onScreen, "-\nstate=KLTE_RRC_STATE_CONNECTED\n");
}

TEST(Launch, TellsTheDelegateWhenItEndsAndLeavesTheConfigurationPushed) {
  RecordedLog log;
  ScriptedService service;
  const ResourceFolder resources;
  resources.put("zef_test_lte.deviceconfig", "a");
  UIApplication application(interfaceDescription());
  application.launch("AppDelegate");
  (void)service.calls();
  application.terminate();
  EXPECT_THAT(service.calls(), ::testing::IsEmpty());
}

TEST(Launch, EndsForADelegateClassThatThereIsNot) {
  UIApplication application(interfaceDescription());
  EXPECT_DEATH(application.launch("AnotherDelegate"), "");
}

}  // namespace
}  // namespace quorin::test
