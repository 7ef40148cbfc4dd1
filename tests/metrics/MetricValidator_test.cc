#include "metrics/MetricValidator.h"

#include <cstdlib>

#include "metrics/metric_cases.h"
#include "tests/support/intake.h"
#include "tests/support/sample_metrics.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::IsEmpty;

constexpr char kNotCared[] = "I dont care for this Metric";

/// Prints to standard error, where a death test reads.
void printToStandardError() {
  setPrintSink([](std::string_view line) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  });
}

std::string storeNamed(const std::string& name) {
  for (const StoreRow& row : storeRows())
    if (row.name == name) return printed((*MetricValidator::sharedInstance().*row.get)());
  return "no such store";
}

TEST(MetricValidator, IsOneForTheProcess) {
  const ScriptedService service;
  EXPECT_EQ(MetricValidator::sharedInstance(), MetricValidator::sharedInstance());
}

TEST(MetricValidator, TakesTheSharedWrapperAndTheThreeKeys) {
  const Intake intake;
  EXPECT_EQ(intake.validator->mySharedOsminInstance(), OsminWrapper::sharedInstance());
  EXPECT_EQ(intake.validator->metricIDKey(), "kKeyMetricID");
  EXPECT_EQ(intake.validator->payloadKey(), "kKeyPayload");
  EXPECT_EQ(intake.validator->profileIDKey(), "kKeyProfileID");
  EXPECT_EQ(intake.validator->metricID(), std::nullopt);
}

TEST(MetricValidator, ListensOnceAtConstructionAndBecomesTheDelegate) {
  RecordedLog log;
  ScriptedService service;
  const auto validator = MetricValidator::sharedInstance();
  EXPECT_THAT(service.calls(), ElementsAre("register kEventTrigger", "register kEventMetric",
                                           "eventsOff", "eventsOn"));
  EXPECT_THAT(log.systemLines(), ElementsAre("-[OsminWrapper listen]: listening for events"));
  EXPECT_THAT(log.printedLines(), IsEmpty());
  EXPECT_EQ(OsminWrapper::sharedInstance()->delegate(), validator);
}

/// Delivers one event as soon as events are switched on.
class EagerManager final : public osmin::client::Manager {
 public:
  explicit EagerManager(dispatch_queue_t queue) : _queue(std::move(queue)) {}
  osmin::CommandResult perform(const std::string&, xpc_object_t, xpc_object_t*) override {
    return {};
  }
  void registerHandler(const std::string& event, osmin::EventHandler handler) override {
    if (event == "kEventMetric") _handler = std::move(handler);
  }
  void eventsOff() override {}
  void eventsOn() override {
    dispatch_async(*_queue, [run = _handler] { run(metricEvent(0x3C4E04, "").get(), nullptr); });
    waitUntilDone(*_queue);
  }

 private:
  dispatch_queue_t _queue;
  osmin::EventHandler _handler;
};

TEST(MetricValidator, BecomesTheDelegateOnlyAfterTheFirstListen) {
  RecordedLog log;
  osmin::client::setManagerFactory([](const std::string&, dispatch_queue_t queue) {
    return std::make_shared<EagerManager>(std::move(queue));
  });
  const auto validator = MetricValidator::sharedInstance();
  runMainQueue();
  EXPECT_THAT(log.systemLines(),
              ElementsAre("-[OsminWrapper listen]_block_invoke: MetricsTrigger dict="
                          "[kKeyMetricID: 3952132, kKeyPayload: <>, kKeyProfileID: 0]",
                          "-[OsminWrapper listen]: listening for events"));
  EXPECT_THAT(log.printedLines(), IsEmpty()) << "the event in between is dropped";
  validator->mySharedOsminInstance()->listen();
  runMainQueue();
  EXPECT_THAT(log.printedLines(), ElementsAre("Metric ID in Hex = 3C4E04",
                                              "Current RRC state is [:]", "Received Valid Metric"));
}

TEST(MetricValidator, StartsWithEveryStoreEmpty) {
  const Intake intake;
  for (const StoreRow& row : storeRows())
    EXPECT_TRUE((*intake.validator.*row.get)().empty()) << row.name;
}

TEST(MetricValidator, HasTheSixBandwidths) {
  const Intake intake;
  EXPECT_EQ(intake.validator->dlbwlookup(),
            (std::map<std::int32_t, float>{
                {0, 1.4F}, {1, 3.0F}, {2, 5.0F}, {3, 10.0F}, {4, 15.0F}, {5, 20.0F}}));
}

TEST(MetricValidator, PrintsTheIdThenTheStoreThenThatTheMetricWasValid) {
  Intake intake;
  intake.service.deliver(osmin::kEventMetric,
                         metricEvent(K_LTE_RRC_STATE, "08 00 10 03 18 07 28 07"));
  EXPECT_THAT(intake.log.printedLines(),
              ElementsAre("Metric ID in Hex = 3C4E04",
                          "Current RRC state is [timestamp: 1970-01-01 00:00:00 UTC, state: "
                          "KLTE_RRC_STATE_CONNECTED, prev_state: (unknown: 7), cause: "
                          "KLTE_RRC_CAUSE_REEST_HO_FAIL]",
                          "Received Valid Metric"));
  EXPECT_EQ(intake.validator->metricID(), K_LTE_RRC_STATE);
}

TEST(MetricValidator, StoresEachOfTheThirtyMetricsUnderItsLogLine) {
  Intake intake;
  ASSERT_EQ(sampleMetrics().size(), 30U);
  for (const SampleMetric& sample : sampleMetrics()) {
    SCOPED_TRACE(sample.messageClass);
    EXPECT_EQ(storeNamed(sample.store), "[:]");
    intake.service.deliver(osmin::kEventMetric, metricEvent(sample.id, sample.payload));
    char id[32];
    std::snprintf(id, sizeof id, "Metric ID in Hex = %2X", static_cast<unsigned>(sample.id));
    EXPECT_THAT(intake.log.printedLines(),
                ElementsAre(id, sample.logText + " " + sample.logged, "Received Valid Metric"));
    EXPECT_EQ(storeNamed(sample.store), sample.kept);
    EXPECT_EQ(intake.validator->metricID(), sample.id);
  }
  for (const SampleMetric& sample : sampleMetrics())
    EXPECT_EQ(storeNamed(sample.store), sample.kept) << "changed by another metric";
  EXPECT_TRUE(intake.validator->myLTESCellMeasDict().empty()) << "nothing ever fills it";
}

TEST(MetricValidator, DoesNotAskTheTagRegistry) {
  Intake intake;
  for (const SampleMetric& sample : sampleMetrics()) (void)intake.handle(sample.id, "1:0");
  (void)intake.handle(K_LTE_RLF, "");
  EXPECT_THAT(intake.log.systemLines(), IsEmpty());
}

TEST(MetricValidator, StoresAnEmptyMessageForAnEventWithoutPayload) {
  Intake intake;
  for (const SampleMetric& sample : sampleMetrics()) {
    EXPECT_EQ(intake.handle(sample.id, std::nullopt).back(), sample.logText + " [:]");
    EXPECT_TRUE(intake.answer());
    EXPECT_EQ(storeNamed(sample.store), "[:]");
  }
}

TEST(MetricValidator, TakesAPayloadThatIsNoBytesAsAbsent) {
  Intake intake;
  for (const Value& payload : {Value(std::string("08 00")), Value(8), Value(true), Value(),
                               Value(List{Value(1)}), Value(Dictionary{{"timestamp", Value(1)}})}) {
    (void)intake.handle(K_LTE_RRC_STATE, "2:3");
    Dictionary event = eventWith(K_LTE_RRC_STATE, std::nullopt);
    event.set(Literal{"kKeyPayload"}, payload);
    EXPECT_TRUE(intake.validator->isMetricIDValidWithMetricdict(event));
    EXPECT_THAT(intake.log.printedLines(),
                ElementsAre("Metric ID in Hex = 3C4E04", "Current RRC state is [:]"));
    EXPECT_TRUE(intake.validator->myLTERRCStateDict().empty());
  }
}

TEST(MetricValidator, PrintsTheIdInAtLeastTwoColumnsOfItsLowThirtyTwoBits) {
  constexpr std::pair<std::int64_t, const char*> kIds[] = {
      {5, " 5"},
      {0, " 0"},
      {16, "10"},
      {0x4E04, "4E04"},
      {-1, "FFFFFFFF"},
      {-0x3C4E04, "FFC3B1FC"},
      {0x10003C4E04, "3C4E04"},
      {0x13C4E04, "13C4E04"},
      {INT64_MIN, " 0"},
      {INT64_MAX, "FFFFFFFF"},
  };
  Intake intake;
  for (const auto& [id, text] : kIds) {
    EXPECT_THAT(intake.handle(id, "2:3"),
                ElementsAre("Metric ID in Hex = " + std::string(text), kNotCared));
    EXPECT_FALSE(intake.answer());
    EXPECT_EQ(intake.validator->metricID(), id);
  }
  EXPECT_TRUE(intake.validator->myLTERRCStateDict().empty());
}

TEST(MetricValidator, DropsMetricsThatItDoesNotShow) {
  Intake intake;
  handleSampleMetrics();
  std::map<std::string, std::string> before;
  for (const StoreRow& row : storeRows())
    before[std::string(row.name)] = storeNamed(std::string(row.name));
  std::vector<std::int64_t> unknown = {K_LTE_RLF, K_LTE_SCELL_MEAS, 0x4E04,   0xD301,   0x13,
                                       0x3C0000,  0x3C0012,         0x3C0014, 0x3CD000, 0x3D4E04,
                                       0x3B4E04,  0x3CD101,         0x3CD30C, 0x3CD30D, 0x3CD311,
                                       0x3CD312,  0x3CD314,         0x3CD315, 0x3CD316, 0x3CD318,
                                       0x3CD508,  0x3CD50E,         0x3CD00A, 0x3CD00B, 0x3CD114};
  for (std::int64_t id = 0x3CD106; id <= 0x3CD111; ++id) unknown.push_back(id);
  for (std::int64_t id = 0x3CD303; id <= 0x3CD30A; ++id) unknown.push_back(id);
  for (std::int64_t id = 0x3CD004; id <= 0x3CD008; ++id) unknown.push_back(id);
  for (const std::int64_t id : unknown) {
    intake.service.deliver(osmin::kEventMetric, metricEvent(id, "08 01 10 01"));
    const auto lines = intake.log.printedLines();
    ASSERT_EQ(lines.size(), 2U) << id;
    EXPECT_EQ(lines[1], kNotCared) << id;
  }
  for (const auto& [name, store] : before) EXPECT_EQ(storeNamed(name), store) << name;
}

TEST(MetricValidator, KnowsTwoMetricsByNameThatItDrops) {
  Intake intake;
  EXPECT_THAT(intake.handle(0x3CD301, "1:5"), ElementsAre("Metric ID in Hex = 3CD301", kNotCared));
  EXPECT_FALSE(intake.answer());
  EXPECT_THAT(intake.handle(0x3C4E25, "1:5"), ElementsAre("Metric ID in Hex = 3C4E25", kNotCared));
  EXPECT_FALSE(intake.answer());
  EXPECT_TRUE(intake.validator->myLTESCellMeasDict().empty());
}

TEST(MetricValidator, DoesNotReadThePayloadOfAMetricThatItDoesNotShow) {
  Intake intake;
  intake.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RLF, "08"));
  EXPECT_THAT(intake.log.printedLines(), ElementsAre("Metric ID in Hex = 3C4E25", kNotCared));
}

TEST(MetricValidator, StoresWhatIsOnlyAskedForButDoesNotCallItReceived) {
  Intake intake;
  intake.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, wire("2:3 4:9")));
  (void)intake.log.printedLines();
  EXPECT_TRUE(intake.validator->isMetricIDValidWithMetricdict(eventWith(K_LTE_RRC_STATE, "2:1")));
  EXPECT_THAT(intake.log.printedLines(),
              ElementsAre("Metric ID in Hex = 3C4E04",
                          "Current RRC state is [state: KLTE_RRC_STATE_IDLE]"));
  EXPECT_EQ(printed(intake.validator->myLTERRCStateDict()), "[state: KLTE_RRC_STATE_IDLE]");
}

TEST(MetricValidator, KeepsOnlyTheKeysOfTheLatestMessage) {
  Intake intake;
  (void)intake.handle(K_LTE_RRC_STATE, "1:0 2:3 3:1 4:250 5:4");
  (void)intake.handle(K_LTE_RRC_STATE, "4:7");
  EXPECT_EQ(printed(intake.validator->myLTERRCStateDict()), "[prev_state_dur_ms: 7]");
}

TEST(MetricValidator, HasNoTimeStampWhereTheMessageHasNone) {
  Intake intake;
  for (const SampleMetric& sample : sampleMetrics()) {
    (void)intake.handle(sample.id, "");
    EXPECT_EQ(storeNamed(sample.store), "[:]");
  }
}

TEST(MetricValidator, TurnsEveryTimeStampIntoTextButTheReselectionStores) {
  Intake intake;
  for (const SampleMetric& sample : sampleMetrics()) {
    (void)intake.handle(sample.id, "1:0");
    EXPECT_EQ(storeNamed(sample.store), sample.store == "myLTESelReselDict"
                                            ? "[timestamp: 0]"
                                            : "[timestamp: 1970-01-01 00:00:00 UTC]");
  }
}

TEST(MetricValidator, KeepsTheMillisecondsInTheReselectionStoreAndTheTextInItsRecord) {
  Intake intake;
  EXPECT_THAT(intake.handle(K_LTE_SEL_RESEL_INFO, "1:86400000"),
              ElementsAre("Metric ID in Hex = 3CD30E",
                          "Received LTE Cell Resel Info is [timestamp: 86400000]"));
  EXPECT_EQ(intake.validator->myLTESelReselDict().find("timestamp")->integer(), 86400000);
  EXPECT_EQ(intake.validator->myLTE().SelReselCellInfo.find("timestamp")->text(),
            "1970-01-02 00:00:00 UTC");
}

TEST(MetricValidator, LogsTheBearersBeforeTheirTimeStampBecomesText) {
  Intake intake;
  EXPECT_THAT(intake.handle(K_CELLULAR_ACTIVE_BEARER, "1:86400000 2:0"),
              ElementsAre("Metric ID in Hex = 3CD50D",
                          "Received Bearer Context Info is [timestamp: 86400000, "
                          "bearer_context_count: 0]"));
  EXPECT_EQ(printed(intake.validator->myCellularActiveBearerDict()),
            "[timestamp: 1970-01-02 00:00:00 UTC, bearer_context_count: 0]");
}

TEST(MetricValidator, WritesTimeStampsInTheZoneThatIsInForce) {
  Intake intake;
  constexpr std::pair<const char*, const char*> kZones[] = {
      {"GMT0", "1970-01-01 00:00:00 GMT"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "1970-01-01 01:00:00 CET"},
      {"EST5EDT,M3.2.0,M11.1.0", "1969-12-31 19:00:00 EST"},
      {"UTC0", "1970-01-01 00:00:00 UTC"},
  };
  for (const auto& [zone, text] : kZones) {
    setenv("TZ", zone, 1);
    (void)intake.handle(K_LTE_RRC_STATE, "1:0");
    EXPECT_EQ(intake.validator->myLTERRCStateDict().find("timestamp")->text(), text);
  }
}

TEST(MetricValidator, HalvesTheBandwidthsOfTheServingCellTowardsZero) {
  constexpr std::pair<const char*, const char*> kCells[] = {
      {"5:5 6:5", "[dl_bw: 2, ul_bw: 2]"},
      {"5:0 6:1", "[dl_bw: 0, ul_bw: 0]"},
      {"5:40", "[dl_bw: 20]"},
      {"6:20", "[ul_bw: 10]"},
      {"5:4294967291 6:4294967295", "[dl_bw: -2, ul_bw: 0]"},
      {"5:2147483648 6:2147483647", "[dl_bw: -1073741824, ul_bw: 1073741823]"},
      {"2:301", "[phy_cell_id: 301]"},
  };
  Intake intake;
  for (const auto& [fields, store] : kCells) {
    EXPECT_EQ(intake.handle(K_LTE_SCELL_INFO, fields).back(),
              "Current Serving Cell Info is " + std::string(store));
    EXPECT_EQ(printed(intake.validator->myLTESCellInfoDict()), store);
  }
}

TEST(MetricValidator, KeepsTheGutiAsADictionary) {
  Intake intake;
  EXPECT_EQ(intake.handle(K_LTE_EMM_CTXT, "6:{1:1 2:2 3:3}").back(),
            "Received EMM Context is [guti: [mmegi: 1, mmec: 2, m_tmsi: 3]]");
  EXPECT_EQ(intake.validator->myLTEEMMContextDict().find("guti")->kind(), Value::Kind::dictionary);
}

TEST(MetricValidator, NotesBesideItsStoresWhenEachMetricLastCame) {
  VirtualClock clock;
  Intake intake;
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::myLTERRCStateDict), std::nullopt);
  clock.advance(Milliseconds(1500));
  (void)intake.handle(K_LTE_RRC_STATE, "");
  clock.advance(Milliseconds(500));
  (void)intake.handle(K_SIM_FILE_INFO, "");
  (void)intake.handle(K_LTE_RLF, "");
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::myLTERRCStateDict), Milliseconds(1500));
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::mySIMFileInfoDict), Milliseconds(2000));
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::myMMContextDict), std::nullopt);
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::myLTESCellMeasDict), std::nullopt);
  (void)intake.handle(K_LTE_RRC_STATE, "");
  EXPECT_EQ(intake.validator->arrival(&MetricValidator::myLTERRCStateDict), Milliseconds(2000));
  EXPECT_TRUE(intake.validator->myLTERRCStateDict().empty()) << "never in the store";
}

TEST(MetricValidator, NotesTheArrivalOfEachOfTheThirty) {
  VirtualClock clock;
  const Intake intake;
  clock.advance(Milliseconds(7));
  handleSampleMetrics();
  for (const MetricCase& row : metricCases())
    EXPECT_EQ(intake.validator->arrival(row.get), Milliseconds(7)) << row.logText;
}

TEST(MetricValidator, DoesNotCareForTriggerEvents) {
  Intake intake;
  intake.service.deliver(osmin::kEventTrigger, metricEvent(K_LTE_RRC_STATE, "10 03"));
  intake.service.deliver(osmin::kEventTrigger, eventOf("x", XpcRef(xpc_null_create()).get()));
  EXPECT_THAT(intake.log.printedLines(),
              ElementsAre("I dont care for events", "I dont care for events"));
  EXPECT_TRUE(intake.validator->myLTERRCStateDict().empty());
  EXPECT_EQ(intake.validator->metricID(), std::nullopt);
}

TEST(MetricValidator, HandlesEventsOneAfterTheOtherInTheirOrder) {
  Intake intake;
  intake.service.deliverToQueue(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, wire("2:0")));
  intake.service.deliverToQueue(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, wire("2:1")));
  EXPECT_THAT(intake.log.printedLines(), IsEmpty());
  runMainQueue();
  EXPECT_THAT(
      intake.log.printedLines(),
      ElementsAre("Metric ID in Hex = 3C4E04", "Current RRC state is [state: KLTE_RRC_STATE_NULL]",
                  "Received Valid Metric", "Metric ID in Hex = 3C4E04",
                  "Current RRC state is [state: KLTE_RRC_STATE_IDLE]", "Received Valid Metric"));
}

/// Answers for itself.
class OwnHandler final : public MetricValidator {
 public:
  bool answer = true;
  std::vector<std::string> handled;

 protected:
  bool handleMetric(const Dictionary& metric) override {
    handled.push_back(printed(metric));
    return answer;
  }
};

TEST(MetricValidator, UsesTheHandlerOfASubclass) {
  RecordedLog log;
  ScriptedService service;
  const auto own = std::make_shared<OwnHandler>();
  own->init();
  service.deliver(osmin::kEventMetric, metricEvent(1, std::nullopt));
  EXPECT_THAT(log.printedLines(), ElementsAre("Received Valid Metric"));
  own->answer = false;
  service.deliver(osmin::kEventMetric, metricEvent(2, "0a ff"));
  EXPECT_THAT(log.printedLines(), IsEmpty());
  EXPECT_FALSE(own->isMetricIDValidWithMetricdict({{"any", Value(3)}}));
  EXPECT_THAT(own->handled,
              ElementsAre("[kKeyMetricID: 1, kKeyProfileID: 0]",
                          "[kKeyMetricID: 2, kKeyPayload: <0aff>, kKeyProfileID: 0]", "[any: 3]"));
}

TEST(MetricValidator, ReadsItsMetricIdOfAnyIntegerWidth) {
  Intake intake;
  for (const Value& id : {Value(std::int32_t{0x3C4E04}), Value(std::uint32_t{0x3C4E04}),
                          Value(std::int64_t{0x3C4E04}), Value(std::uint64_t{0x3C4E04})})
    EXPECT_TRUE(intake.validator->isMetricIDValidWithMetricdict({{"kKeyMetricID", id}}));
}

TEST(MetricValidator, StopsTheProcessWithoutALineForAnEventWithoutAnIntegerMetricId) {
  const Intake intake;
  printToStandardError();
  EXPECT_DEATH(intake.validator->metricsDidUpdate(nullptr), Eq(""));
  EXPECT_DEATH((void)intake.validator->isMetricIDValidWithMetricdict({}), Eq(""));
  EXPECT_DEATH((void)intake.validator->isMetricIDValidWithMetricdict(
                   {{"kkeymetricid", Value(std::int64_t{0x3C4E04})}}),
               Eq(""));
  for (const Value& id : {Value(3952132.0), Value(3952132.0F), Value(std::string("3952132")),
                          Value(true), Value(), Value(List{Value(1)}), Value(Dictionary()),
                          Value(test::data("3c4e04")), Value(std::uint64_t{1} << 63)})
    EXPECT_DEATH((void)intake.validator->isMetricIDValidWithMetricdict({{"kKeyMetricID", id}}),
                 Eq(""));
}

TEST(MetricValidator, StopsTheProcessAfterTheIdLineForAPayloadThatDoesNotDecode) {
  const Intake intake;
  printToStandardError();
  for (const SampleMetric& sample : sampleMetrics()) {
    char line[32];
    std::snprintf(line, sizeof line, "Metric ID in Hex = %2X\n", static_cast<unsigned>(sample.id));
    Dictionary event = eventWith(sample.id, std::nullopt);
    event.set(Literal{"kKeyPayload"}, Value(test::data("08")));
    EXPECT_DEATH((void)intake.validator->isMetricIDValidWithMetricdict(event),
                 Eq(std::string(line)));
  }
}

TEST(MetricValidator, StopsTheProcessForAnEventThatIsNoDictionary) {
  EXPECT_DEATH(
      {
        Intake intake;
        intake.service.deliver(osmin::kEventMetric, XpcRef(xpc_int64_create(5)));
      },
      Eq(""));
}

TEST(MetricIds, AreThirtyTwoNumbersByName) {
  constexpr MetricID kNamed[] = {
      {"K_LTE_CDRX_CONFIG", 0x3C0000 + 19992},        {"K_LTE_RRC_STATE", 0x3C0000 + 19972},
      {"K_LTE_SCELL_INFO", 0x3C0000 + 16578},         {"K_LTE_RLF", 0x3C0000 + 20005},
      {"K_LTE_SEL_RESEL_INFO", 0x3C0000 + 54030},     {"K_LTE_SCELL_MEAS", 0x3C0000 + 54017},
      {"K_LTE_TX_POWER", 0x3C0000 + 54018},           {"K_LTE_RSRP_RSRQ_SINR", 0x3C0000 + 20330},
      {"K_LTE_COMPCARR_INFO", 0x3C0000 + 54027},      {"K_LTE_CA_STATUS", 0x3C0000 + 54035},
      {"K_LTE_INTERRAT_MEAS", 0x3C0000 + 54032},      {"K_LTE_INTRARAT_MEAS", 0x3C0000 + 54031},
      {"K_LTE_SECONDARYCELL_MEAS", 0x3C0000 + 54039}, {"K_CELLULAR_MM_INFO", 0x3C0000 + 54537},
      {"K_CELLULAR_ACTIVE_BEARER", 0x3C0000 + 54541}, {"K_LTE_EMM_CTXT", 0x3C0000 + 54540},
      {"K_CELLULAR_MM_CTXT", 0x3C0000 + 54538},       {"K_CELLULAR_GMM_CTXT", 0x3C0000 + 54539},
      {"K_UMTS_RRC_STATE", 0x3C0000 + 53522},         {"K_UMTS_RRC_CONFIG", 0x3C0000 + 53523},
      {"K_UMTS_SCELL_INFO", 0x3C0000 + 12300},        {"K_UMTS_SCELL_MEAS", 0x3C0000 + 53506},
      {"K_UMTS_TX_POWER", 0x3C0000 + 53507},          {"K_UMTS_SEL_RESEL_INFO", 0x3C0000 + 53508},
      {"K_UMTS_NCELL_MEAS", 0x3C0000 + 53509},        {"K_GSM_SCELL_INFO", 0x3C0000 + 11788},
      {"K_GSM_IDLE_CONFIG", 0x3C0000 + 53249},        {"K_GSM_IDLE_SCELL_MEAS", 0x3C0000 + 53250},
      {"K_GSM_CS_RF_MEAS", 0x3C0000 + 53251},         {"K_GSM_NCELL_MEAS", 0x3C0000 + 53257},
      {"K_GSM_GPRS_CONFIG", 0x3C0000 + 53260},        {"K_SIM_FILE_INFO", 0x3C0000 + 19},
  };
  ASSERT_EQ(std::size(kMetricIDs), std::size(kNamed));
  for (std::size_t i = 0; i < std::size(kNamed); ++i) {
    EXPECT_EQ(kMetricIDs[i].name, kNamed[i].name);
    EXPECT_EQ(kMetricIDs[i].id, kNamed[i].id) << kNamed[i].name;
  }
}

}  // namespace
}  // namespace quorin::test
