#include "app/RootNavigationController.h"

#include <algorithm>

#include "tests/support/resource_folder.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::IsEmpty;

constexpr char kClear[] = "perform kCommandClearConfiguration kKeyAppID=int64 2";
constexpr char kPush[] =
    "perform kCommandAddConfiguration kKeyAppID=int64 2 kKeyPayload=data <00ff0a> "
    "kKeyPayloadType=int64 0";
constexpr char kQuery[] =
    "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
    "9999 kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 "
    "kKeyMetricID=int64 0";
constexpr char kCleared[] = "-[OsminWrapper removeVantorConfigForAppid:]: error=0 msg=";
constexpr char kPushed[] =
    "-[OsminWrapper addVantorConfigForAppId:andProtofFilePath:]: error=0 msg=";
constexpr char kQueried[] =
    "-[OsminWrapper querySpecificMetric:triggerRef:triggerType:triggerID:profileID:metricID:]: "
    "error=0 msg=";
constexpr char kListening[] = "-[OsminWrapper listen]: listening for events";

constexpr UIScene kScene{"RootNavigationController", nullptr, {}, "Root"};

/// Lets a test set what only the class itself may set.
class OpenRoot final : public RootNavigationController {
 public:
  using RootNavigationController::_myAppID;
  using RootNavigationController::_myOsminWrapper;
};

/// A navigation root whose creation is already behind.
struct StartUp {
  RecordedLog log;
  ScriptedService service;
  ResourceFolder resources;
  OpenRoot root;

  StartUp() {
    root.initWithCoder(kScene);
    (void)service.calls();
    (void)log.systemLines();
  }
  void putConfiguration() const {
    resources.put("zef_test_lte.deviceconfig", std::string_view("\x00\xff\n", 3));
  }
};

TEST(RootNavigationController, SetsItsFivePropertiesInEachInitialiserBeforeItsBases) {
  const ScriptedService service;
  const Bundle bundle("/anywhere");
  const auto first = std::make_shared<UIViewController>();
  RootNavigationController barred;
  RootNavigationController rooted;
  RootNavigationController named;
  RootNavigationController coded;
  barred.initWithNavigationBarClass("Bar", "Tools");
  rooted.initWithRootViewController(first);
  named.initWithNibName("Root", &bundle);
  coded.initWithCoder(kScene);
  for (const RootNavigationController* root : {&barred, &rooted, &named, &coded}) {
    EXPECT_EQ(root->myAppID(), "quorin");
    EXPECT_EQ(root->metricFileName(), "zef_test_lte");
    EXPECT_EQ(root->metricFileType(), "deviceconfig");
    EXPECT_EQ(root->myOsminWrapper(), OsminWrapper::sharedInstance());
    EXPECT_EQ(root->myMetricValidator(), MetricValidator::sharedInstance());
  }
  EXPECT_EQ(barred.navigationBarClass(), "Bar");
  EXPECT_EQ(barred.toolbarClass(), "Tools");
  EXPECT_THAT(rooted.viewControllers(), ElementsAre(first));
  EXPECT_EQ(named.nibName(), "Root");
  EXPECT_EQ(named.nibBundle(), &bundle);
  EXPECT_EQ(coded.scene(), &kScene);
  EXPECT_EQ(coded.title(), "Root");
}

TEST(RootNavigationController, KeepsEmptyArgumentsOfItsInitialisersEmpty) {
  const ScriptedService service;
  RootNavigationController root;
  root.initWithNavigationBarClass(std::nullopt, std::nullopt);
  EXPECT_EQ(root.navigationBarClass(), std::nullopt);
  EXPECT_EQ(root.toolbarClass(), std::nullopt);
  root.initWithNibName(std::nullopt, nullptr);
  EXPECT_EQ(root.nibName(), std::nullopt);
  EXPECT_EQ(root.nibBundle(), nullptr);
}

/// Notes whether the subscription was up when its view loaded.
class FirstPage final : public UIViewController {
 public:
  explicit FirstPage(const ScriptedService& service) : _service(service) {}
  void viewDidLoad() override { clientNames = _service.clientNames().size(); }
  std::size_t clientNames = 0;

 private:
  const ScriptedService& _service;
};

TEST(RootNavigationController, MakesTheWrapperBeforeItsBaseTakesThePage) {
  const ScriptedService service;
  const auto first = std::make_shared<FirstPage>(service);
  RootNavigationController root;
  root.initWithRootViewController(first);
  EXPECT_EQ(first->clientNames, 1U);
}

TEST(RootNavigationController, ListensOnceAndSendsNothingWhenItIsMade) {
  RecordedLog log;
  ScriptedService service;
  RootNavigationController root;
  root.initWithCoder(kScene);
  EXPECT_THAT(service.clientNames(), ElementsAre("quorin"));
  EXPECT_THAT(service.calls(), ElementsAre("register kEventTrigger", "register kEventMetric",
                                           "eventsOff", "eventsOn"));
  EXPECT_THAT(log.systemLines(), ElementsAre(kListening));
  EXPECT_THAT(log.printedLines(), IsEmpty());
}

TEST(RootNavigationController, ClearsPushesListensAndQueriesInThisOrder) {
  StartUp start;
  start.putConfiguration();
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(),
              ElementsAre(kClear, kPush, "register kEventTrigger", "register kEventMetric",
                          "eventsOff", "eventsOn", kQuery));
  EXPECT_THAT(start.log.printedLines(), ElementsAre("pushing metric file", "Querying SIM files"));
  EXPECT_THAT(start.log.systemLines(), ElementsAre(kCleared, kPushed, kListening, kQueried));
}

TEST(RootNavigationController, StartsUpOnceForItsLife) {
  StartUp start;
  start.putConfiguration();
  start.root.loadViewIfNeeded();
  (void)start.service.calls();
  start.root.loadViewIfNeeded();
  start.root.didReceiveMemoryWarning();
  EXPECT_THAT(start.service.calls(), IsEmpty());
}

TEST(RootNavigationController, WritesItsLinesBetweenTheCommands) {
  std::vector<std::string> order;
  const ScriptedService service;
  const ResourceFolder resources;
  resources.put("zef_test_lte.deviceconfig", "x");
  OpenRoot root;
  const LogSink note = [&](std::string_view line) { order.emplace_back(line); };
  const LogSink systemBefore = setSystemLogSink(note);
  const LogSink printBefore = setPrintSink(note);
  root.initWithCoder(kScene);
  root.loadViewIfNeeded();
  EXPECT_THAT(order, ElementsAre(kListening, kCleared, "pushing metric file", kPushed, kListening,
                                 "Querying SIM files", kQueried));
  (void)setSystemLogSink(systemBefore);
  (void)setPrintSink(printBefore);
}

TEST(RootNavigationController, OnlyClearsWithoutTheConfigurationFile) {
  StartUp start;
  start.resources.put("zef_test_lte.txt", "x");
  start.resources.put("zef_test_lte", "x");
  start.resources.put("ZEF_TEST_LTE.deviceconfig", "x");
  std::filesystem::create_directory(start.resources.path() + "/zef_test_lte.deviceconfig");
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(), ElementsAre(kClear));
  EXPECT_THAT(start.log.printedLines(), ElementsAre("Metric Log File path doesnt exist"));
  EXPECT_THAT(start.log.systemLines(), ElementsAre(kCleared));
}

TEST(RootNavigationController, StopsWhenThePushIsRefused) {
  StartUp start;
  start.putConfiguration();
  start.service.answer("kCommandAddConfiguration", -534716414, "not now");
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(), ElementsAre(kClear, kPush));
  EXPECT_THAT(start.log.printedLines(), ElementsAre("pushing metric file"));
  EXPECT_THAT(start.log.systemLines(),
              ElementsAre(kCleared,
                          "-[OsminWrapper addVantorConfigForAppId:andProtofFilePath:]: "
                          "error=-534716414 msg=not now"));
}

TEST(RootNavigationController, GoesOnWhenTheClearOrTheQueryIsRefused) {
  StartUp start;
  start.putConfiguration();
  start.service.answer("kCommandClearConfiguration", 1, "");
  start.service.answer("kCommandQueryMetric", 2, "");
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(),
              ElementsAre(kClear, kPush, "register kEventTrigger", "register kEventMetric",
                          "eventsOff", "eventsOn", kQuery));
  EXPECT_THAT(start.log.printedLines(), ElementsAre("pushing metric file", "Querying SIM files"));
}

TEST(RootNavigationController, QueriesUnderItsLiteralApplicationIdWhateverItsProperty) {
  StartUp start;
  start.putConfiguration();
  start.root._myAppID = "another";
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(), IsEmpty()) << "clear and push are turned away before";

  // A push that passes needs the right ID; change it while the push is under way.
  OpenRoot root;
  root.initWithCoder(kScene);
  (void)start.service.calls();
  const LogSink before = setSystemLogSink([&](std::string_view line) {
    if (line == kPushed) root._myAppID = "another";
  });
  root.loadViewIfNeeded();
  (void)setSystemLogSink(before);
  EXPECT_EQ(root.myAppID(), "another");
  EXPECT_THAT(start.service.calls(),
              ElementsAre(kClear, kPush, "register kEventTrigger", "register kEventMetric",
                          "eventsOff", "eventsOn", kQuery));
}

TEST(RootNavigationController, StopsTheProcessAtThePushWithoutAWrapper) {
  StartUp start;
  start.putConfiguration();
  start.root._myOsminWrapper = nullptr;
  EXPECT_DEATH(
      {
        setPrintSink([](std::string_view line) {
          std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
        });
        start.root.loadViewIfNeeded();
      },
      Eq("pushing metric file\n"));
}

TEST(RootNavigationController, ClearsNothingWithoutAWrapperAndSaysThatTheFileIsMissing) {
  StartUp start;
  start.root._myOsminWrapper = nullptr;
  start.root.loadViewIfNeeded();
  EXPECT_THAT(start.service.calls(), IsEmpty());
  EXPECT_THAT(start.log.printedLines(), ElementsAre("Metric Log File path doesnt exist"));
}

TEST(RootNavigationController, PushesTheFileThatShipsWithTheApplication) {
  RecordedLog log;
  ScriptedService service;
  OpenRoot root;
  root.initWithCoder(kScene);
  root.loadViewIfNeeded();
  EXPECT_THAT(log.printedLines(), ElementsAre("pushing metric file", "Querying SIM files"));
  const Ref<Data> shipped =
      dataWithContentsOfFile(QUORIN_SOURCE_DIR "/app/resources/zef_test_lte.deviceconfig");
  ASSERT_TRUE(shipped);
  const auto calls = service.calls();
  EXPECT_EQ(std::ranges::count(
                calls, "perform kCommandAddConfiguration kKeyAppID=int64 2 kKeyPayload=data <" +
                           hexText(shipped->bytes()) + "> kKeyPayloadType=int64 0"),
            1);
}

}  // namespace
}  // namespace quorin::test
