#include "viewer/pages.h"

#include "metrics/metric_cases.h"
#include "tests/support/intake.h"
#include "viewer/page_tree.h"

namespace quorin::test {
namespace {

struct Known {
  const char* key;
  const char* source;       // the store behind the page
  const char* header = "";  // before the section's index
};

/// The keys in the order in which a cell tests them.
constexpr Known kCellKeys[] = {
    {"LTE C-DRX", "myLTECDRXConfigDict"},
    {"LTE Serving Cell Info", "myLTESCellInfoDict"},
    {"LTE RRC State", "myLTERRCStateDict"},
    {"LTE Sel Resel Parameters", "myLTESelReselDict"},
    {"LTE EUTRA Neighbor Info", "myLTESelReselDict", "EUTRA Neighbor "},
    {"LTE Tx Power", "myLTETxPowerDict", "TxPowerInfo "},
    {"LTE LTE Neighbor Cell Meas", "myLTEIntraRatMeasDict", "LTE Neighbor "},
    {"LTE UMTS Neighbor Cell Meas", "myLTEInterRatMeasDict", "UMTS Neighbor "},
    {"LTE GSM Neighbor Cell Meas", "myLTEInterRatMeasDict", "GSM Neighbor "},
    {"LTE NAS", "myLTEEMMContextDict"},
    {"LTE Serving Cell Meas", "myLTERsrpRsrqSinrDict"},
    {"LTE Component Carrier Info", "myLTECompCarrDict"},
    {"LTE CA Status", "myLTECAStatusDict", "Component Carrier "},
    {"LTE Secondary Cell Meas", "myLTESecondaryCellMeasDict", "Secondary Cell Meas "},
    {"LTE Active Bearers", "myCellularActiveBearerDict", "PDP "},
    {"UMTS Active Bearers", "myCellularActiveBearerDict", "PDP "},
    {"GSM Active Bearers", "myCellularActiveBearerDict", "PDP "},
    {"UMTS RRC State", "myUMTSRRCStateDict"},
    {"UMTS RRC Configuration", "myUMTSRRCConfigDict"},
    {"UMTS Serving Cell Info", "myUMTSCellInfoDict"},
    {"UMTS Serving Cell Measurement", "myUMTSCellMeasDict"},
    {"UMTS Tx Power", "myUMTSTxPowerDict", "TxPowerInfo "},
    {"UMTS Sel Resel Parameters", "myUMTSSelReselDict"},
    {"UMTS EUTRA Neighbor Info", "myUMTSSelReselDict", "EUTRA Neighbor "},
    {"UMTS UTRA Neighbor Info", "myUMTSSelReselDict", "UTRA Neighbor "},
    {"UMTS GSM Neighbor Info", "myUMTSSelReselDict", "GSM Neighbor "},
    {"UMTS LTE Neighbor Cell Meas", "myUMTSNbrMeasDict", "LTE Neighbor "},
    {"UMTS UMTS Neighbor Cell Meas", "myUMTSNbrMeasDict", "UMTS Neighbor "},
    {"UMTS GSM Neighbor Cell Meas", "myUMTSNbrMeasDict", "GSM Neighbor "},
    {"UMTS NAS GMM", "myGMMContextDict"},
    {"GSM NAS GMM", "myGMMContextDict"},
    {"UMTS NAS MM", "myMMContextDict"},
    {"GSM NAS MM", "myMMContextDict"},
    {"GSM Serving Cell Info", "myGSMScellInfoDict"},
    {"GSM Idle Config", "myGSMIdleConfigInfoDict"},
    {"GSM Idle Serv Cell Meas", "myGSMIdleScellMeasDict"},
    {"Connected Serv Cell Meas", "myGSMConnRfMeasDict"},
    {"GSM GPRS Config", "myGSMGPRSConfigDict"},
    {"GSM LTE Neighbor Cell Meas", "myGSMNbrMeasDict", "LTE Neighbor "},
    {"GSM UMTS Neighbor Cell Meas", "myGSMNbrMeasDict", "UMTS Neighbor "},
    {"GSM GSM Neighbor Cell Meas", "myGSMNbrMeasDict", "GSM Neighbor "},
    {"Device Info SIM Files", "mySIMFileInfoDict", "SIM Content "},
};

/// The keys that count their sections, in the order in which the count tests them.
constexpr const char* kSectionKeys[] = {
    "LTE EUTRA Neighbor Info",      "LTE Tx Power",
    "LTE UMTS Neighbor Cell Meas",  "LTE GSM Neighbor Cell Meas",
    "LTE LTE Neighbor Cell Meas",   "LTE CA Status",
    "LTE Secondary Cell Meas",      "LTE Active Bearers",
    "UMTS Active Bearers",          "GSM Active Bearers",
    "UMTS Serving Cell Meas",       "UMTS Tx Power",
    "UMTS EUTRA Neighbor Info",     "UMTS UTRA Neighbor Info",
    "UMTS GSM Neighbor Info",       "UMTS LTE Neighbor Cell Meas",
    "UMTS UMTS Neighbor Cell Meas", "UMTS GSM Neighbor Cell Meas",
    "GSM LTE Neighbor Cell Meas",   "GSM UMTS Neighbor Cell Meas",
    "GSM GSM Neighbor Cell Meas",   "Device Info SIM Files",
};

std::string_view nameOf(MetricValidator::Store store) {
  for (const StoreRow& row : storeRows())
    if (row.get == store) return row.name;
  return "";
}

TEST(Pages, HaveTheKeysThatACellTestsInTheirOrder) {
  std::vector<std::string_view> cells;
  for (const PageRow& page : pageRows())
    if (page.only != Question::counts) cells.push_back(page.key);
  ASSERT_EQ(cells.size(), std::size(kCellKeys));
  for (std::size_t i = 0; i < cells.size(); ++i) EXPECT_EQ(cells[i], kCellKeys[i].key);
  EXPECT_EQ(pageRows().size(), 43U);
}

TEST(Pages, ReadTheirStoresAndBearTheirHeaders) {
  for (const Known& known : kCellKeys) {
    const PageRow* page = pageRow(known.key, Question::cells);
    ASSERT_TRUE(page) << known.key;
    EXPECT_EQ(page->key, known.key);
    EXPECT_EQ(nameOf(sourceOf(*page)), known.source) << known.key;
    EXPECT_EQ(page->header, known.header) << known.key;
  }
}

TEST(Pages, CountSectionsUnderTwentyTwoKeysOnly) {
  std::size_t counting = 0;
  for (const PageRow& page : pageRows())
    if (page.only != Question::cells && std::holds_alternative<SectionPerEntryOf>(page.shown)) {
      ++counting;
      EXPECT_FALSE(page.header.empty()) << page.key;
    }
  EXPECT_EQ(counting, std::size(kSectionKeys));
  for (const char* key : kSectionKeys) {
    const PageRow* page = pageRow(key, Question::counts);
    ASSERT_TRUE(page) << key;
    EXPECT_TRUE(std::holds_alternative<SectionPerEntryOf>(page->shown)) << key;
  }
}

TEST(Pages, SpellOneKeyTwoWays) {
  const PageRow* counts = pageRow("UMTS Serving Cell Meas", Question::counts);
  ASSERT_TRUE(counts);
  EXPECT_EQ(counts->header, "RxInfo ");
  EXPECT_EQ(nameOf(sourceOf(*counts)), "myUMTSCellMeasDict");
  EXPECT_FALSE(pageRow("UMTS Serving Cell Meas", Question::cells));
  EXPECT_TRUE(pageRow("UMTS Serving Cell Measurement", Question::cells));
  EXPECT_FALSE(pageRow("UMTS Serving Cell Measurement", Question::counts));
}

TEST(Pages, AreFoundByTheWholeKeyOnly) {
  for (const char* key :
       {"", " ", "LTE", "LTE ", "LTE rrc state", "LTE RRC State ", " LTE RRC State", "RRC State",
        "Device Info IMSI", "Device Info IMEISV", "GSM Connected Serv Cell Meas",
        "GSM GSM GPRS Config", "UMTS NAS", "GSM RRC State"})
    for (const Question question : {Question::counts, Question::cells})
      EXPECT_FALSE(pageRow(key, question)) << key;
}

TEST(Pages, HaveNoRowOfTheTreeForFourOfTheirKeys) {
  std::vector<std::string> unreached;
  const PageTree tree = buildPageTree();
  for (const Known& known : kCellKeys) {
    bool reached = false;
    for (const auto& [technology, categories] : tree.categories)
      for (const std::string& category : categories)
        reached = reached || technology + " " + category == known.key;
    if (!reached) unreached.emplace_back(known.key);
  }
  EXPECT_THAT(unreached,
              ::testing::ElementsAre("LTE Component Carrier Info", "UMTS Serving Cell Measurement",
                                     "Connected Serv Cell Meas", "GSM GPRS Config"));
}

TEST(Pages, ShowNoRowsForTheFirstEntryOfAnEmptyList) {
  Intake intake;
  (void)intake.handle(K_LTE_RSRP_RSRQ_SINR, "");
  const auto sections =
      sectionsOf(*pageRow("LTE Serving Cell Meas", Question::cells), *intake.validator);
  ASSERT_EQ(sections.size(), 1U);
  EXPECT_TRUE(sections[0].empty());
}

}  // namespace
}  // namespace quorin::test
