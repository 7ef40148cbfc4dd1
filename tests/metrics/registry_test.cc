#include "metrics/registry/KBBMetricUtility.h"

#include <thread>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr MetricTag kNamed[] = {
    {0x4E04, "KCellularLteRrcState"},
    {0x4E18, "KCellularLteCdrxConfig"},
    {0x4E25, "KCellularLteRadioLinkFailure"},
    {0x40C2, "KCellularLteScellInfo"},
    {0xD30E, "KCellularLteSelReselCellInfo"},
    {0xD301, "KCellularLteServingCellMeasurement"},
    {0xD302, "KCellularLteTxPower"},
    {0x4F6A, "KCellularRsrpRsrqSinr"},
    {0xD50C, "KCellularEmmContext"},
    {0xD30B, "KCellularLteComponentCarrierInfo"},
    {0xD313, "KCellularLteCarrierAggregationStatus"},
    {0xD310, "KCellularLteNbrInterRatCellMeas"},
    {0xD30F, "KCellularLteNbrEutraCellMeas"},
    {0xD509, "KCellularMmCommonInfo"},
    {0xD50D, "KCellularActivatedBearerContexts"},
    {0xD112, "KCellularWcdmaRrcConnectionState"},
    {0x300C, "KCellularWcdmaCellInfo"},
    {0xD102, "KCellularWcdmaScellMeasurement"},
    {0xD103, "KCellularWcdmaTxPower"},
    {0xD105, "KCellularWcdmaNbrCellMeas"},
    {0xD104, "KCellularWcdmaSelReselCellInfo"},
    {0xD113, "KCellularWcdmaRrcConfiguration"},
    {0xD50A, "KCellularMmContext"},
    {0xD50B, "KCellularGmmContext"},
    {0x2E0C, "kCellularGsmScellInfo"},
    {0xD001, "kCellularGsmIdleConfig"},
    {0xD002, "kCellularGsmIdleScellMeasurement"},
    {0xD003, "kCellularGsmCsRfMeasurement"},
    {0xD009, "kCellularGsmGrrEventMeasCr"},
    {0xD00C, "kCellularGsmGprsConfig"},
    {0x0013, "kCellularSimCardFiles"},
};

TEST(MetricTagRegistry, HasThirtyOneTagsInItsOrder) {
  const auto tags = KBBMetricUtility::tags();
  ASSERT_EQ(tags.size(), std::size(kNamed));
  for (std::size_t i = 0; i < tags.size(); ++i) {
    EXPECT_EQ(tags[i].tag, kNamed[i].tag);
    EXPECT_EQ(tags[i].name, kNamed[i].name);
  }
}

TEST(MetricTagRegistry, WritesOneLineForEveryTagThatItKnowsWhateverTheClass) {
  RecordedLog log;
  for (const MetricTag& row : kNamed)
    for (const std::string_view name :
         {row.name, std::string_view("KCellularLteRrcState"), std::string_view()}) {
      EXPECT_TRUE(KBBMetricUtility::isValidMetricIdTag(row.tag, name)) << row.name;
      EXPECT_THAT(log.systemLines(), ElementsAre("valid metricId tag"));
    }
}

TEST(MetricTagRegistry, SaysNoToEveryOtherTagWithoutALine) {
  RecordedLog log;
  int known = 0;
  for (unsigned tag = 0; tag <= 0xffff; ++tag)
    known += KBBMetricUtility::isValidMetricIdTag(static_cast<std::uint16_t>(tag), "Any") ? 1 : 0;
  EXPECT_EQ(known, 31);
  EXPECT_EQ(log.systemLines().size(), 31U);
}

TEST(MetricTagRegistry, KnowsTagsThatTheIntakeDropsAndOneLessThanItHandles) {
  RecordedLog log;
  EXPECT_TRUE(KBBMetricUtility::isValidMetricIdTag(19, "KCellularGsmIdleConfig"));
  EXPECT_TRUE(KBBMetricUtility::isValidMetricIdTag(0x4E25, ""));
  EXPECT_TRUE(KBBMetricUtility::isValidMetricIdTag(0xD301, ""));
  EXPECT_EQ(log.systemLines().size(), 3U);
  EXPECT_FALSE(
      KBBMetricUtility::isValidMetricIdTag(0xD317, "KCellularLteSecondaryCellMeasurements"));
  EXPECT_THAT(log.systemLines(), IsEmpty());
}

TEST(MetricTagRegistry, AnswersTwoThreadsAtOnce) {
  setSystemLogSink([](std::string_view) {});
  bool other = false;
  std::thread thread([&] { other = KBBMetricUtility::isValidMetricIdTag(19, ""); });
  EXPECT_TRUE(KBBMetricUtility::isValidMetricIdTag(19, ""));
  thread.join();
  EXPECT_TRUE(other);
}

}  // namespace
}  // namespace quorin::test
