#include "metrics/metric_cases.h"

#include "messages/catalogue.h"
#include "tests/support/intake.h"
#include "tests/support/sample_metrics.h"

namespace quorin::test {
namespace {

constexpr const char* kStores[] = {
    "myLTERRCStateDict",
    "myLTECDRXConfigDict",
    "myLTESCellInfoDict",
    "myLTESCellMeasDict",
    "myLTESelReselDict",
    "myLTERsrpRsrqSinrDict",
    "myLTECompCarrDict",
    "myLTETxPowerDict",
    "myLTEInterRatMeasDict",
    "myLTEIntraRatMeasDict",
    "myLTECAStatusDict",
    "myLTESecondaryCellMeasDict",
    "myLTEEMMContextDict",
    "myCellularMMCommonInfoDict",
    "myCellularActiveBearerDict",
    "myGMMContextDict",
    "myMMContextDict",
    "myUMTSRRCStateDict",
    "myUMTSRRCConfigDict",
    "myUMTSCellInfoDict",
    "myUMTSCellMeasDict",
    "myUMTSTxPowerDict",
    "myUMTSSelReselDict",
    "myUMTSNbrMeasDict",
    "myGSMScellInfoDict",
    "myGSMIdleConfigInfoDict",
    "myGSMIdleScellMeasDict",
    "myGSMConnRfMeasDict",
    "myGSMNbrMeasDict",
    "myGSMGPRSConfigDict",
    "mySIMFileInfoDict",
};

std::string_view nameOf(MetricValidator::Store store) {
  for (const StoreRow& row : storeRows())
    if (row.get == store) return row.name;
  return "";
}

TEST(StoreRows, AreThirtyOneWithSettersOfTheirOwn) {
  const Intake intake;
  ASSERT_EQ(storeRows().size(), std::size(kStores));
  for (std::size_t i = 0; i < std::size(kStores); ++i) {
    EXPECT_EQ(storeRows()[i].name, kStores[i]);
    (*intake.validator.*storeRows()[i].set)({{"store", Value(static_cast<std::int64_t>(i))}});
  }
  for (std::size_t i = 0; i < std::size(kStores); ++i)
    EXPECT_EQ(printed((*intake.validator.*storeRows()[i].get)()),
              "[store: " + std::to_string(i) + "]");
}

TEST(MetricCases, AreThirtyEachWithItsClassItsStoreAndItsLogText) {
  ASSERT_EQ(metricCases().size(), 30U);
  for (std::size_t i = 0; i < metricCases().size(); ++i) {
    const MetricCase& row = metricCases()[i];
    const SampleMetric& sample = sampleMetrics()[i];
    EXPECT_EQ(row.id, sample.id);
    EXPECT_EQ(nameOf(row.get), sample.store);
    EXPECT_EQ(row.logText, sample.logText);
    EXPECT_EQ(row.index, i);
    const CatalogueRow* message = catalogueRow(sample.id);
    ASSERT_TRUE(message) << sample.messageClass;
    EXPECT_EQ(message->table->name, sample.messageClass);
  }
}

TEST(MetricCases, AreFoundByTheWholeIdOnly) {
  std::size_t found = 0;
  for (std::int64_t tag = 0; tag <= 0xffff; ++tag) {
    if (metricCase(0x3C0000 + tag)) ++found;
    for (const std::int64_t prefix :
         {std::int64_t{0}, std::int64_t{0x3B0000}, std::int64_t{0x3D0000},
          std::int64_t{0x1003C0000}, std::int64_t{-0x3C0000}})
      ASSERT_FALSE(metricCase(prefix + tag)) << prefix + tag;
  }
  EXPECT_EQ(found, 30U);
  for (const SampleMetric& sample : sampleMetrics()) {
    ASSERT_TRUE(metricCase(sample.id));
    EXPECT_EQ(metricCase(sample.id)->id, sample.id);
  }
}

TEST(MetricCases, RefuseAPayloadThatEndsTooSoon) {
  const auto tooShort = test::data("08");
  for (const MetricCase& row : metricCases()) {
    Dictionary store;
    EXPECT_FALSE(row.message->decode(tooShort->bytes(), store)) << row.logText;
    EXPECT_TRUE(row.message->decode(kNoBytes, store)) << row.logText;
    EXPECT_EQ(store, Dictionary()) << row.logText;
  }
}

}  // namespace
}  // namespace quorin::test
