#include "client/OsminWrapper.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kAddLine[] = "-[OsminWrapper addVantorConfigForAppId:andProtofFilePath:]: ";
constexpr char kRemoveLine[] = "-[OsminWrapper removeVantorConfigForAppid:]: ";
constexpr char kQueryLine[] =
    "-[OsminWrapper querySpecificMetric:triggerRef:triggerType:triggerID:profileID:metricID:]: ";
constexpr char kListening[] = "-[OsminWrapper listen]: listening for events";
constexpr char kMetricLine[] = "-[OsminWrapper listen]_block_invoke: MetricsTrigger dict=";
constexpr char kTriggerLine[] = "-[OsminWrapper listen]_block_invoke: EventTrigger dict=";

/// A file with these bytes, gone when the test ends.
class ConfigurationFile {
 public:
  explicit ConfigurationFile(std::string_view content) {
    std::ofstream(_path, std::ios::binary) << content;
  }
  ~ConfigurationFile() { std::filesystem::remove(_path); }
  [[nodiscard]] const std::string& path() const { return _path; }

 private:
  std::string _path = ::testing::TempDir() + "quorin_configuration_" + std::to_string(::getpid());
};

/// Notes what is delivered, and on which thread.
class NotingDelegate : public OsminWrapperDelegate {
 public:
  void metricsDidUpdate(const EventRecord* metric) override { note("metric ", metric); }
  void eventsDidUpdate(const EventRecord* trigger) override { note("trigger ", trigger); }

  [[nodiscard]] std::vector<std::string> delivered() { return std::exchange(_delivered, {}); }
  [[nodiscard]] const EventRecord* latest() const { return _latest; }
  [[nodiscard]] std::thread::id thread() const { return _thread; }

 private:
  void note(const std::string& kind, const EventRecord* record) {
    _delivered.push_back(kind + (record ? printed(record->dictionary()) : "nothing"));
    _latest = record;
    _thread = std::this_thread::get_id();
  }

  std::vector<std::string> _delivered;
  const EventRecord* _latest = nullptr;
  std::thread::id _thread;
};

struct Rig {
  RecordedLog log;
  ScriptedService service;
  std::shared_ptr<OsminWrapper> wrapper = OsminWrapper::sharedInstance();

  bool query() { return wrapper->querySpecificMetric("quorin", 9999, 0, 8323091, 0, 0); }
};

/// Lets the creation of the n-th object fail, counting from 1, or gives another object in its
/// place.
class FailingCreation {
 public:
  explicit FailingCreation(int which, XpcRef instead = {}) {
    setXpcCreateHook([count = 0, which, instead](xpc_object_t made) mutable {
      if (++count != which) return made;
      xpc_release(made);
      return xpc_retain(instead.get());
    });
  }
  ~FailingCreation() { setXpcCreateHook(nullptr); }
};

TEST(OsminWrapper, IsOneForTheProcess) {
  const ScriptedService service;
  EXPECT_EQ(OsminWrapper::sharedInstance(), OsminWrapper::sharedInstance());
  EXPECT_EQ(service.clientNames().size(), 1U);
}

TEST(OsminWrapper, MakesItsManagerUnderTheClientNameOnItsOwnQueue) {
  dispatch_queue_t queue;
  std::vector<std::string> names;
  osmin::client::setManagerFactory([&](const std::string& name, dispatch_queue_t given) {
    names.push_back(name);
    queue = std::move(given);
    return nullptr;
  });
  const auto wrapper = OsminWrapper::sharedInstance();
  EXPECT_THAT(names, ElementsAre("quorin"));
  ASSERT_TRUE(queue);
  EXPECT_EQ(queue, wrapper->queue());
  EXPECT_EQ(queue->label(), "org.quorin.viewer.serialQ.queue");
}

TEST(OsminWrapper, ThatIsTheSecondHasNoQueueOfItsOwn) {
  const Rig rig;
  const auto second = std::make_shared<OsminWrapper>();
  EXPECT_FALSE(second->queue());
  EXPECT_FALSE(second->queue());
  EXPECT_TRUE(rig.wrapper->queue());
}

TEST(OsminWrapper, GivesTheOneQueueToWhoeverAsksFirst) {
  const ScriptedService service;
  const auto first = std::make_shared<OsminWrapper>();
  EXPECT_TRUE(first->queue());
  EXPECT_FALSE(OsminWrapper::sharedInstance()->queue());
}

TEST(OsminWrapper, ReplacesItsManagerWhenItIsInitialisedAgain) {
  std::vector<std::weak_ptr<osmin::client::Manager>> managers;
  struct Silent final : osmin::client::Manager {
    osmin::CommandResult perform(const std::string&, xpc_object_t, xpc_object_t*) override {
      return {};
    }
    void registerHandler(const std::string&, osmin::EventHandler) override {}
    void eventsOff() override {}
    void eventsOn() override {}
  };
  osmin::client::setManagerFactory([&](const std::string&, const dispatch_queue_t&) {
    auto manager = std::make_shared<Silent>();
    managers.push_back(manager);
    return manager;
  });
  {
    const auto wrapper = std::make_shared<OsminWrapper>();
    wrapper->init();
    wrapper->init();
    ASSERT_EQ(managers.size(), 2U);
    EXPECT_TRUE(managers[0].expired());
    EXPECT_EQ(managers[1].use_count(), 1);
  }
  EXPECT_TRUE(managers[1].expired());
}

TEST(OsminWrapper, SendsTheConfigurationKeyByKey) {
  Rig rig;
  const ConfigurationFile file(std::string_view("\x00\x7f\n\xff", 4));
  EXPECT_TRUE(rig.wrapper->addVantorConfigForAppId("quorin", file.path()));
  EXPECT_THAT(rig.service.calls(),
              ElementsAre("perform kCommandAddConfiguration kKeyAppID=int64 2 "
                          "kKeyPayload=data <007f0aff> kKeyPayloadType=int64 0"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kAddLine) + "error=0 msg="));
}

TEST(OsminWrapper, SendsAnEmptyPayloadForAFileThatIsMissing) {
  Rig rig;
  EXPECT_TRUE(rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere/at/all.deviceconfig"));
  EXPECT_THAT(rig.service.calls(), ElementsAre("perform kCommandAddConfiguration kKeyAppID=int64 2 "
                                               "kKeyPayload=data <> kKeyPayloadType=int64 0"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kAddLine) + "error=0 msg="));
}

TEST(OsminWrapper, SendsAnEmptyPayloadForAPathThatIsAFolder) {
  Rig rig;
  EXPECT_TRUE(rig.wrapper->addVantorConfigForAppId("quorin", ::testing::TempDir()));
  EXPECT_THAT(rig.service.calls(), ElementsAre("perform kCommandAddConfiguration kKeyAppID=int64 2 "
                                               "kKeyPayload=data <> kKeyPayloadType=int64 0"));
}

TEST(OsminWrapper, ClearsWithTheApplicationIdAlone) {
  Rig rig;
  EXPECT_TRUE(rig.wrapper->removeVantorConfigForAppid("quorin"));
  EXPECT_THAT(rig.service.calls(),
              ElementsAre("perform kCommandClearConfiguration kKeyAppID=int64 2"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kRemoveLine) + "error=0 msg="));
}

TEST(OsminWrapper, SendsTheQueryKeyByKey) {
  Rig rig;
  EXPECT_TRUE(rig.wrapper->querySpecificMetric("quorin", 1, 2, 3, 4, 5));
  EXPECT_THAT(rig.service.calls(),
              ElementsAre("perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 "
                          "kKeyTriggerRef=int64 1 kKeyTriggerType=int64 2 kKeyTriggerID=int64 3 "
                          "kKeyProfileID=int64 4 kKeyMetricID=int64 5"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kQueryLine) + "error=0 msg="));
}

TEST(OsminWrapper, ExtendsNegativeNumbersToSixtyFourBits) {
  Rig rig;
  EXPECT_TRUE(rig.wrapper->querySpecificMetric("quorin", -1, INT32_MIN, INT32_MAX, -2, -3));
  EXPECT_THAT(rig.service.calls(),
              ElementsAre("perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 "
                          "kKeyTriggerRef=int64 -1 kKeyTriggerType=int64 -2147483648 "
                          "kKeyTriggerID=int64 2147483647 kKeyProfileID=int64 -2 "
                          "kKeyMetricID=int64 -3"));
}

TEST(OsminWrapper, SendsAndLogsNothingForAnotherApplicationId) {
  Rig rig;
  const ConfigurationFile file("x");
  for (const char* id : {"", "Quorin", "QUORIN", "quorin ", " quorin", "quori", "quorin\n"}) {
    EXPECT_FALSE(rig.wrapper->addVantorConfigForAppId(id, file.path())) << id;
    EXPECT_FALSE(rig.wrapper->removeVantorConfigForAppid(id)) << id;
    EXPECT_FALSE(rig.wrapper->querySpecificMetric(id, 0, 0, 0, 0, 0)) << id;
  }
  EXPECT_THAT(rig.service.calls(), IsEmpty());
  EXPECT_THAT(rig.log.systemLines(), IsEmpty());
  EXPECT_THAT(rig.log.printedLines(), IsEmpty());
}

TEST(OsminWrapper, LogsStatusAndMessageOfACommandThatIsRefused) {
  Rig rig;
  rig.service.answer("kCommandAddConfiguration", -534716414, "");
  rig.service.answer("kCommandClearConfiguration", 1, "nothing is configured");
  rig.service.answer("kCommandQueryMetric", -1, "no such metric");
  EXPECT_FALSE(rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere"));
  EXPECT_FALSE(rig.wrapper->removeVantorConfigForAppid("quorin"));
  EXPECT_FALSE(rig.query());
  EXPECT_THAT(rig.log.systemLines(),
              ElementsAre(std::string(kAddLine) + "error=-534716414 msg=",
                          std::string(kRemoveLine) + "error=1 msg=nothing is configured",
                          std::string(kQueryLine) + "error=-1 msg=no such metric"));
  EXPECT_EQ(rig.service.calls().size(), 3U) << "nothing is tried again";
}

TEST(OsminWrapper, LogsTheMessageOfACommandThatSucceeds) {
  Rig rig;
  rig.service.answer("kCommandClearConfiguration", 0, "cleared");
  EXPECT_TRUE(rig.wrapper->removeVantorConfigForAppid("quorin"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kRemoveLine) + "error=0 msg=cleared"));
}

TEST(OsminWrapper, SendsTheNullObjectForEachObjectOfAQueryThatCannotBeMade) {
  constexpr const char* kCalls[] = {
      "perform kCommandQueryMetric null",
      "perform kCommandQueryMetric kKeyAppID=null kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 "
      "kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=null kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 "
      "kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=null "
      "kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 "
      "kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=null kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=int64 0 kKeyTriggerID=null kKeyProfileID=int64 0 kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=null kKeyMetricID=int64 0",
      "perform kCommandQueryMetric kKeyAppID=int64 2 kKeyPayloadType=int64 0 kKeyTriggerRef=int64 "
      "9999 "
      "kKeyTriggerType=int64 0 kKeyTriggerID=int64 8323091 kKeyProfileID=int64 0 kKeyMetricID=null",
  };
  Rig rig;
  for (int which = 1; which <= 8; ++which) {
    const FailingCreation failing(which);
    EXPECT_TRUE(rig.query());
    EXPECT_THAT(rig.service.calls(), ElementsAre(kCalls[which - 1]));
    EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kQueryLine) + "error=0 msg="));
  }
}

TEST(OsminWrapper, SendsTheNullObjectInPlaceOfAnInputThatIsNoDictionary) {
  Rig rig;
  const XpcRef number(xpc_int64_create(7));
  const FailingCreation failing(1, number);
  EXPECT_TRUE(rig.wrapper->removeVantorConfigForAppid("quorin"));
  EXPECT_THAT(rig.service.calls(), ElementsAre("perform kCommandClearConfiguration null"));
}

TEST(OsminWrapper, SendsNothingToClearWithWhenTheDictionaryOrItsValueCannotBeMade) {
  Rig rig;
  for (const auto& [which, call] :
       {std::pair{1, "perform kCommandClearConfiguration null"},
        std::pair{2, "perform kCommandClearConfiguration kKeyAppID=null"}}) {
    const FailingCreation failing(which);
    EXPECT_TRUE(rig.wrapper->removeVantorConfigForAppid("quorin"));
    EXPECT_THAT(rig.service.calls(), ElementsAre(call));
  }
}

TEST(OsminWrapper, StopsAPushWithoutAWordWhenItsPayloadCannotBeMade) {
  Rig rig;
  const XpcRef null(xpc_null_create());
  for (const XpcRef& made : {XpcRef(), null}) {
    const FailingCreation failing(1, made);
    EXPECT_FALSE(rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere"));
    EXPECT_THAT(rig.service.calls(), IsEmpty());
    EXPECT_THAT(rig.log.systemLines(), IsEmpty());
  }
}

TEST(OsminWrapper, SendsTheNullObjectForEachOtherObjectOfAPushThatCannotBeMade) {
  constexpr const char* kCalls[] = {
      "perform kCommandAddConfiguration null",
      "perform kCommandAddConfiguration kKeyAppID=null kKeyPayload=data <> kKeyPayloadType=int64 0",
      "perform kCommandAddConfiguration kKeyAppID=int64 2 kKeyPayload=data <> kKeyPayloadType=null",
  };
  Rig rig;
  for (int which = 2; which <= 4; ++which) {
    const FailingCreation failing(which);
    EXPECT_TRUE(rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere"));
    EXPECT_THAT(rig.service.calls(), ElementsAre(kCalls[which - 2]));
    EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kAddLine) + "error=0 msg="));
  }
}

TEST(OsminWrapper, SurvivesThatNoObjectAtAllCanBeMade) {
  Rig rig;
  setXpcCreateHook([](xpc_object_t made) -> xpc_object_t {
    xpc_release(made);
    return nullptr;
  });
  EXPECT_FALSE(rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere"));
  EXPECT_TRUE(rig.wrapper->removeVantorConfigForAppid("quorin"));
  setXpcCreateHook(nullptr);
  EXPECT_THAT(
      rig.service.calls(),
      ElementsAre("perform kCommandClearConfiguration nothing (output is not the null object)"));
}

TEST(OsminWrapper, EndsTheProcessWhenAnInterProcessObjectThrows) {
  Rig rig;
  setXpcCreateHook([](xpc_object_t) -> xpc_object_t { throw std::bad_alloc(); });
  EXPECT_DEATH((void)rig.wrapper->addVantorConfigForAppId("quorin", "/nowhere"), "");
  EXPECT_DEATH((void)rig.wrapper->removeVantorConfigForAppid("quorin"), "");
  EXPECT_DEATH((void)rig.query(), "");
  setXpcCreateHook([count = 0](xpc_object_t made) mutable {
    if (++count == 3) throw std::bad_alloc();  // the output object, made last
    return made;
  });
  EXPECT_DEATH((void)rig.wrapper->removeVantorConfigForAppid("quorin"), "");
  setXpcCreateHook(nullptr);
}

/// Notes how many references to it there are during each call.
class CountedManager final : public osmin::client::Manager,
                             public std::enable_shared_from_this<CountedManager> {
 public:
  osmin::CommandResult perform(const std::string&, xpc_object_t, xpc_object_t*) override {
    note();
    return {};
  }
  void registerHandler(const std::string&, osmin::EventHandler) override { note(); }
  void eventsOff() override { note(); }
  void eventsOn() override { note(); }

  [[nodiscard]] std::vector<long> counts() { return std::exchange(_counts, {}); }

 private:
  void note() { _counts.push_back(weak_from_this().use_count()); }
  std::vector<long> _counts;
};

TEST(OsminWrapper, TakesOneReferenceToTheManagerForEachLibraryCallAndGivesItBack) {
  const RecordedLog log;
  std::weak_ptr<CountedManager> made;
  osmin::client::setManagerFactory([&](const std::string&, const dispatch_queue_t&) {
    auto manager = std::make_shared<CountedManager>();
    made = manager;
    return manager;
  });
  const auto wrapper = OsminWrapper::sharedInstance();
  CountedManager& manager = *made.lock();
  EXPECT_EQ(made.use_count(), 1) << "the wrapper's own";
  const std::pair<std::function<void()>, std::vector<long>> rows[] = {
      {[&] { (void)wrapper->addVantorConfigForAppId("quorin", "/nowhere"); }, {2}},
      {[&] { (void)wrapper->removeVantorConfigForAppid("quorin"); }, {2}},
      {[&] { (void)wrapper->querySpecificMetric("quorin", 0, 0, 0, 0, 0); }, {2}},
      {[&] { wrapper->listen(); }, {2, 2, 2, 2}},
  };
  for (const auto& [call, counts] : rows) {
    call();
    EXPECT_EQ(manager.counts(), counts);
    EXPECT_EQ(made.use_count(), 1);
  }
}

TEST(OsminWrapper, RegistersBothHandlersAndRestartsDeliveryEachTimeItListens) {
  Rig rig;
  rig.wrapper->listen();
  EXPECT_THAT(rig.service.calls(), ElementsAre("register kEventTrigger", "register kEventMetric",
                                               "eventsOff", "eventsOn"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(kListening));
  rig.wrapper->listen();
  EXPECT_THAT(rig.service.calls(), ElementsAre("register kEventTrigger", "register kEventMetric",
                                               "eventsOff", "eventsOn"));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(kListening));
}

TEST(OsminWrapper, RegistersNothingBeforeItListens) {
  Rig rig;
  EXPECT_THAT(rig.service.calls(), IsEmpty());
  EXPECT_THAT(rig.log.systemLines(), IsEmpty());
}

TEST(OsminWrapper, DeliversAnEventOnceThoughItListenedTwice) {
  Rig rig;
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  rig.wrapper->listen();
  (void)rig.log.systemLines();
  rig.service.deliver("kEventMetric", metricEvent(5, "0a"));
  EXPECT_THAT(rig.log.systemLines(),
              ElementsAre(std::string(kMetricLine) +
                          "[kKeyMetricID: 5, kKeyPayload: <0a>, kKeyProfileID: 0]"));
  EXPECT_THAT(delegate->delivered(),
              ElementsAre("metric [kKeyMetricID: 5, kKeyPayload: <0a>, kKeyProfileID: 0]"));
}

TEST(OsminWrapper, DeliversTriggerEventsAsTheyComeWhateverTheirKeys) {
  Rig rig;
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  (void)rig.log.systemLines();
  rig.service.deliver("kEventTrigger",
                      eventOf("anything", XpcRef(xpc_string_create("at all")).get()));
  rig.service.deliver("kEventTrigger",
                      eventOf("kKeyTriggerID", XpcRef(xpc_int64_create(-9)).get()));
  EXPECT_THAT(rig.log.systemLines(),
              ElementsAre(std::string(kTriggerLine) + "[anything: at all]",
                          std::string(kTriggerLine) + "[kKeyTriggerID: -9]"));
  EXPECT_THAT(delegate->delivered(),
              ElementsAre("trigger [anything: at all]", "trigger [kKeyTriggerID: -9]"));
}

TEST(OsminWrapper, DeliversNothingInPlaceOfAnEventThatIsNoDictionary) {
  Rig rig;
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  (void)rig.log.systemLines();
  rig.service.deliver("kEventMetric", XpcRef(xpc_int64_create(5)));
  EXPECT_THAT(rig.log.systemLines(), ElementsAre(std::string(kMetricLine) + "(null)"));
  EXPECT_THAT(delegate->delivered(), ElementsAre("metric nothing"));
}

TEST(OsminWrapper, LogsOnItsQueueAndDeliversOnTheMainThreadOnly) {
  ScriptedService service;
  const auto wrapper = OsminWrapper::sharedInstance();
  const auto delegate = std::make_shared<NotingDelegate>();
  wrapper->setDelegate(delegate);
  wrapper->listen();
  std::thread::id logThread;
  const LogSink before =
      setSystemLogSink([&](std::string_view) { logThread = std::this_thread::get_id(); });
  service.deliverToQueue("kEventMetric", metricEvent(5, "0a"));
  EXPECT_THAT(delegate->delivered(), IsEmpty()) << "nothing is delivered on the wrapper's queue";
  EXPECT_NE(logThread, std::thread::id());
  EXPECT_NE(logThread, std::this_thread::get_id());
  runMainQueue();
  EXPECT_EQ(delegate->delivered().size(), 1U);
  EXPECT_EQ(delegate->thread(), std::this_thread::get_id());
  (void)setSystemLogSink(before);
}

TEST(OsminWrapper, DeliversEventsInTheirOrder) {
  Rig rig;
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  for (int i = 0; i < 3; ++i)
    rig.service.deliverToQueue("kEventMetric", eventOf("n", XpcRef(xpc_int64_create(i)).get()));
  runMainQueue();
  EXPECT_THAT(delegate->delivered(),
              ElementsAre("metric [n: 0]", "metric [n: 1]", "metric [n: 2]"));
}

TEST(OsminWrapper, LogsAndDropsAnEventWhileThereIsNoDelegate) {
  Rig rig;
  rig.wrapper->listen();
  (void)rig.log.systemLines();
  rig.service.deliverToQueue("kEventMetric", metricEvent(5, std::nullopt));
  rig.service.deliverToQueue("kEventTrigger", metricEvent(6, std::nullopt));
  EXPECT_THAT(rig.log.systemLines(),
              ElementsAre(std::string(kMetricLine) + "[kKeyMetricID: 5, kKeyProfileID: 0]",
                          std::string(kTriggerLine) + "[kKeyMetricID: 6, kKeyProfileID: 0]"));
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  EXPECT_FALSE(dispatch_get_main_queue().runPending()) << "nothing was scheduled";
  EXPECT_THAT(delegate->delivered(), IsEmpty());
}

TEST(OsminWrapper, DeliversNothingToADelegateThatIsGoneByThen) {
  Rig rig;
  auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  (void)rig.log.systemLines();
  rig.service.deliverToQueue("kEventMetric", metricEvent(5, std::nullopt));
  delegate.reset();
  EXPECT_FALSE(rig.wrapper->delegate()) << "the delegate is held weakly";
  EXPECT_TRUE(dispatch_get_main_queue().runPending()) << "the delivery was scheduled";
  EXPECT_THAT(rig.log.systemLines(),
              ElementsAre(std::string(kMetricLine) + "[kKeyMetricID: 5, kKeyProfileID: 0]"));
}

TEST(OsminWrapper, DeliversToTheDelegateThatIsSetWhenTheDeliveryRuns) {
  Rig rig;
  const auto before = std::make_shared<NotingDelegate>();
  const auto now = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(before);
  rig.wrapper->listen();
  rig.service.deliverToQueue("kEventMetric", metricEvent(5, std::nullopt));
  rig.wrapper->setDelegate(now);
  EXPECT_EQ(rig.wrapper->delegate(), now);
  runMainQueue();
  EXPECT_THAT(before->delivered(), IsEmpty());
  EXPECT_EQ(now->delivered().size(), 1U);
}

TEST(OsminWrapper, KeepsEachEventRecordAllocatedAfterItsDelivery) {
  Rig rig;
  const auto delegate = std::make_shared<NotingDelegate>();
  rig.wrapper->setDelegate(delegate);
  rig.wrapper->listen();
  rig.service.deliver("kEventMetric", metricEvent(0x3C4E04, "08 00 10 03"));
  ASSERT_TRUE(delegate->latest());
  EXPECT_EQ(delegate->latest()->references(), 1U) << "the conversion's own is never given back";
  EXPECT_EQ(printed(delegate->latest()->dictionary()),
            "[kKeyMetricID: 3952132, kKeyPayload: <08001003>, kKeyProfileID: 0]");
  EXPECT_LE(delegate->latest()->allocatedBytes() - 4, 64U);
}

TEST(OsminWrapper, LivesOnInItsHandlers) {
  ScriptedService service;
  auto wrapper = std::make_shared<OsminWrapper>();
  wrapper->init();
  const std::weak_ptr<OsminWrapper> alive = wrapper;
  wrapper->listen();
  wrapper.reset();
  EXPECT_FALSE(alive.expired());
}

TEST(OsminWrapper, LivesOnUntilAScheduledDeliveryHasRun) {
  auto service = std::make_unique<ScriptedService>();
  auto wrapper = std::make_shared<OsminWrapper>();
  wrapper->init();
  const std::weak_ptr<OsminWrapper> alive = wrapper;
  const auto delegate = std::make_shared<NotingDelegate>();
  wrapper->setDelegate(delegate);
  wrapper->listen();
  service->deliverToQueue("kEventMetric", metricEvent(5, std::nullopt));
  wrapper.reset();
  service.reset();  // and with it the handlers
  EXPECT_FALSE(alive.expired());
  runMainQueue();
  EXPECT_EQ(delegate->delivered().size(), 1U);
  EXPECT_TRUE(alive.expired());
}

TEST(OsminWrapper, ReportsCommandsAsNotCarriedOutWithoutAManager) {
  RecordedLog log;
  osmin::client::setManagerFactory(nullptr);
  EXPECT_FALSE(OsminWrapper::sharedInstance()->removeVantorConfigForAppid("quorin"));
  EXPECT_THAT(log.systemLines(),
              ElementsAre(std::string(kRemoveLine) + "error=-534716414 msg=no baseband manager"));
}

TEST(OsminConstants, HaveTheTextsThatTheIntakeLooksUp) {
  EXPECT_STREQ(osmin::kKeyMetricID, "kKeyMetricID");
  EXPECT_STREQ(osmin::kKeyPayload, "kKeyPayload");
  EXPECT_STREQ(osmin::kKeyProfileID, "kKeyProfileID");
}

}  // namespace
}  // namespace quorin::test
