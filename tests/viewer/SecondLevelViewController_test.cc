#include "viewer/SecondLevelViewController.h"

#include "metrics/metric_cases.h"
#include "tests/support/intake.h"
#include "tests/support/sample_metrics.h"
#include "tests/support/walk.h"
#include "viewer/FirstLevelViewController.h"
#include "viewer/ThirdLevelViewController.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kComeBack[] = "-\nCome back later=\n";

/// What a page shows before any metric, and once every sample metric came. "store:NAME": an entry a
/// row of that store, in one section without a header.
struct PageCase {
  const char* technology;
  const char* category;
  const char* before;
  const char* after;
};

constexpr char kBearers[] =
    "# PDP 0\ncid=1\nnsapi=5\napn=internet\npdp_type=PDP_TYPE_IPv4\npdp_addr=<0a000001>\n"
    "is_addr_irat_mobile=0\n# PDP 1\ncid=2\napn=ims\npdp_type=PDP_TYPE_IPv4v6\n";

/// Every row of the page tree, in its order.
constexpr PageCase kTreePages[] = {
    {"Device Info", "IMSI", kComeBack, kComeBack},
    {"Device Info", "IMEISV", kComeBack, kComeBack},
    {"Device Info", "SIM Files", "# SIM Content 0\nWaiting for Update=\n",
     "# SIM Content 0\nef_id=12258\ncontent=<98101032547698103254>\n# SIM Content 1\nef_id=28435\n"
     "content=<>\n"},

    {"LTE", "NAS", "-\n", "store:myLTEEMMContextDict"},
    {"LTE", "RRC State", "-\n", "store:myLTERRCStateDict"},
    {"LTE", "Serving Cell Info", "-\n", "store:myLTESCellInfoDict"},
    {"LTE", "Serving Cell Meas", "-\n =\n",
     "-\nphy_cell_id=301\nrsrp0=-95\nrsrp1=-97\nrsrq0=-10\nrsrq1=-11\nsinr0=12.5\nsinr1=-1.5\n"},
    {"LTE", "Tx Power", "# TxPowerInfo 0\n =\n",
     "# TxPowerInfo 0\npucch_tx_power=-20\npusch_tx_power=15\nsubframe_index=9\n"
     "# TxPowerInfo 1\npucch_tx_power=-19\n"},
    {"LTE", "Sel Resel Parameters",
     "-\ntimestamp=\nims_emergency_support=\nac_barring_for_emergency=\n"
     "mo_signalling_ac_barring_factor=\nmo_signalling_ac_barring_time=\n"
     "mo_signalling_ac_barring_for_special_ac=\nmo_data_ac_barring_factor=\n"
     "mo_data_ac_barring_time=\nmo_data_ac_barring_for_special_ac=\nQRxLevMin=\nQQualMin=\n"
     "Q_hyst=\nS_non_intra_search_P=\nS_non_intra_search_Q=\nS_intra_search_P=\n"
     "S_intra_search_Q=\nThresh_serving_lowP=\nThresh_serving_lowQ=\npriority_operating_freq=\n"
     "multi_band_info=\n",
     "-\ntimestamp=2023-11-14 22:13:20 UTC\nims_emergency_support=1\nac_barring_for_emergency=0\n"
     "mo_signalling_ac_barring_factor=95\nmo_signalling_ac_barring_time=\n"
     "mo_signalling_ac_barring_for_special_ac=\nmo_data_ac_barring_factor=\n"
     "mo_data_ac_barring_time=\nmo_data_ac_barring_for_special_ac=\nQRxLevMin=-64\nQQualMin=-18\n"
     "Q_hyst=4\nS_non_intra_search_P=\nS_non_intra_search_Q=\nS_intra_search_P=\n"
     "S_intra_search_Q=\nThresh_serving_lowP=\nThresh_serving_lowQ=\npriority_operating_freq=5\n"
     "multi_band_info=[3, 7]\n"},
    {"LTE", "EUTRA Neighbor Info", "# EUTRA Neighbor 0\nWaiting for Update=\n",
     "# EUTRA Neighbor 0\nearfcn=1300\nQ_rxlev_min=-62\nQ_offset=2\ndl_bw=10.0\npriority=6\n"
     "frame_type=TDD\nband=3\n# EUTRA Neighbor 1\nearfcn=3350\ndl_bw=9\n"},
    {"LTE", "C-DRX", "-\n", "store:myLTECDRXConfigDict"},
    {"LTE", "LTE Neighbor Cell Meas", "# LTE Neighbor 0\n =\n",
     "# LTE Neighbor 0\nnbr_earfcn=6300\nnbr_phys_cell_id=77\nfreq_band_ind=20\nnbr_rsrp=-98\n"
     "nbr_rsrq=-10.5\n# LTE Neighbor 1\nnbr_phys_cell_id=78\nnbr_rsrq=-10.0\n"},
    {"LTE", "UMTS Neighbor Cell Meas", "# UMTS Neighbor 0\n =\n",
     "# UMTS Neighbor 0\nuarfcn=10713\npsc=305\nrscp=-92\necno=13.5\n"},
    {"LTE", "GSM Neighbor Cell Meas", "# GSM Neighbor 0\n =\n",
     "# GSM Neighbor 0\narfcn=62\nbsic=35\nrxlev=30\n"},
    {"LTE", "CA Status", "# Component Carrier 0\n =\n",
     "# Component Carrier 0\nindex=0\nstate=SCC_STATE_ACTIVATED\npci=301\ndl_bandwidth=20.0\n"
     "has_uplink=1\nul_bandwidth=5\nrsrp=-112\nrsrq=-10.5\nsnr=13\nrssi=-81\n"
     "# Component Carrier 1\nindex=1\nstate=SCC_STATE_CONFIGURED_DEACTIVATED\ndl_bandwidth=1.4\n"
     "rsrp=0\nrsrq=-0.25\n"
     "# Component Carrier 2\nindex=2\nstate=SCC_STATE_DECONFIGURED\ndl_bandwidth=6\n"},
    {"LTE", "Secondary Cell Meas", "# Secondary Cell Meas 0\n =\n",
     "# Secondary Cell Meas 0\nindex=1\nrsrp=-99\nrsrq=-12.75\nsnr=20\nrssi=-70\n"
     "# Secondary Cell Meas 1\nindex=2\n"},
    {"LTE", "Active Bearers", "# PDP 0\nWaiting for Update=\n", kBearers},

    {"UMTS", "NAS GMM", "-\n", "store:myGMMContextDict"},
    {"UMTS", "NAS MM", "-\n", "store:myMMContextDict"},
    {"UMTS", "RRC State", "-\n", "store:myUMTSRRCStateDict"},
    {"UMTS", "RRC Configuration", "-\n", "store:myUMTSRRCConfigDict"},
    {"UMTS", "Serving Cell Info", "-\n", "store:myUMTSCellInfoDict"},
    {"UMTS", "Serving Cell Meas", "# RxInfo 0\nCome back later=\n",
     "# RxInfo 0\nCome back later=\nCome back later=\nCome back later=\nCome back later=\n"
     "Come back later=\n# RxInfo 1\nCome back later=\nCome back later=\n"},
    {"UMTS", "Tx Power", "# TxPowerInfo 0\nWaiting for Update=\n",
     "# TxPowerInfo 0\npucch_tx_power=-12\npusch_tx_power=7\nsubframe_index=4\n"},
    {"UMTS", "Sel Resel Parameters",
     "-\ntimestamp=\nims_emergency_support=\nhsdpa_capable=\nedch_capable=\nduplex_mode=\n"
     "cell_barred=\nfach_meas_occ_info_present=\ns_rxlev=\ns_qual=\ns_intrasearch=\n"
     "s_intersearch=\ns_search_rat=\ns_cell_prio=\nmulti_band_info=\n",
     "-\ntimestamp=2023-11-14 22:13:20 UTC\nims_emergency_support=1\nhsdpa_capable=1\n"
     "edch_capable=0\nduplex_mode=TDD\ncell_barred=0\nfach_meas_occ_info_present=1\ns_rxlev=-30\n"
     "s_qual=-18\ns_intrasearch=10\ns_intersearch=8\ns_search_rat=4\ns_cell_prio=5\n"
     "multi_band_info=[1, 8]\n"},
    {"UMTS", "EUTRA Neighbor Info", "# EUTRA Neighbor 0\nWaiting for Update=\n",
     "# EUTRA Neighbor 0\nearfcn=6300\nprio=6\n# EUTRA Neighbor 1\nearfcn=1300\nprio=7\n"},
    {"UMTS", "UTRA Neighbor Info", "# UTRA Neighbor 0\nWaiting for Update=\n",
     "# UTRA Neighbor 0\nuarfcn=10713\nprio=3\n"},
    {"UMTS", "GSM Neighbor Info", "# GSM Neighbor 0\nWaiting for Update=\n",
     "# GSM Neighbor 0\narfcn=62\nprio=1\n"},
    {"UMTS", "LTE Neighbor Cell Meas", "# LTE Neighbor 0\nWaiting for Update=\n",
     "# LTE Neighbor 0\nearfcn=6300\nphy_cell_id=301\neutra_band=20\nrsrp=-101\nrsrq=-11.5\n"},
    {"UMTS", "UMTS Neighbor Cell Meas", "# UMTS Neighbor 0\nWaiting for Update=\n",
     "# UMTS Neighbor 0\nuarfcn=10713\nband=1\npsc=305\necno=6.5\nrscp=-92\n"},
    {"UMTS", "GSM Neighbor Cell Meas", "# GSM Neighbor 0\nWaiting for Update=\n",
     "# GSM Neighbor 0\narfcn=62\nbsic=35\nrxlev=30\n"},
    {"UMTS", "Active Bearers", "# PDP 0\nWaiting for Update=\n", kBearers},

    {"GSM", "NAS GMM", "-\n", "store:myGMMContextDict"},
    {"GSM", "NAS MM", "-\n", "store:myMMContextDict"},
    {"GSM", "Serving Cell Info", "-\n", "store:myGSMScellInfoDict"},
    {"GSM", "Idle Config", "-\n", "store:myGSMIdleConfigInfoDict"},
    {"GSM", "Idle Serv Cell Meas", "-\n", "store:myGSMIdleScellMeasDict"},
    {"GSM", "Connected Serv Cell Meas", kComeBack, kComeBack},
    {"GSM", "GSM GPRS Config", kComeBack, kComeBack},
    {"GSM", "LTE Neighbor Cell Meas", "# LTE Neighbor 0\nWaiting for Update=\n",
     "# LTE Neighbor 0\nphysical_cell_id=301\nbandwidth=50\nrsrp=41\nearfcn=6300\nrsrq=8.5\n"},
    {"GSM", "UMTS Neighbor Cell Meas", "# UMTS Neighbor 0\nWaiting for Update=\n",
     "# UMTS Neighbor 0\ncell_type=1\ncpich_sc=305\ndl_uarfcn=10713\ncpich_rscp=25\n"
     "cpich_ecn0=13\n"},
    {"GSM", "GSM Neighbor Cell Meas", "# GSM Neighbor 0\nWaiting for Update=\n",
     "# GSM Neighbor 0\nmcc=262\nmnc=1\nlac=4660\nci=7\nbsic=12\narfcn=77\nrxlev=30\n"
     "# GSM Neighbor 1\narfcn=78\nrxlev=31\n"},
    {"GSM", "Active Bearers", "# PDP 0\nWaiting for Update=\n", kBearers},
};

/// Keys that no row of the tree composes.
constexpr PageCase kOtherPages[] = {
    {"LTE", "Component Carrier Info", "-\n", "store:myLTECompCarrDict"},
    {"GSM", "GPRS Config", "-\n", "store:myGSMGPRSConfigDict"},
    {"Connected", "Serv Cell Meas", "-\n", "store:myGSMConnRfMeasDict"},
    {"UMTS", "Serving Cell Measurement", "-\nWaiting for Update=\n", "-\nrssi=-67\n"},
    {"LTE", "", kComeBack, kComeBack},
    {"", "NAS", kComeBack, kComeBack},
    {"NR", "Serving Cell Info", kComeBack, kComeBack},
    {"LTE", "RRC state", kComeBack, kComeBack},
};

std::string expectation(const std::string& text) {
  if (!text.starts_with("store:")) return text;
  std::string rows = "-\n";
  for (const StoreRow& row : storeRows())
    if (text == "store:" + std::string(row.name))
      for (const auto& [key, value] : (*MetricValidator::sharedInstance().*row.get)())
        rows += std::string(key.text) + "=" + printed(value) + "\n";
  return rows;
}

/// Walks to each category of the tree and compares what its page shows.
void walkTheTree(const char* PageCase::*expected) {
  const auto* next = std::begin(kTreePages);
  for (std::ptrdiff_t technology = 0; technology < 4; ++technology) {
    Walk first;
    const auto list = first.tap<FirstLevelViewController>(technology);
    ASSERT_TRUE(list);
    const std::ptrdiff_t rows = list->numberOfRowsInSection(list->tableView(), 0);
    for (std::ptrdiff_t row = 0; row < rows; ++row, ++next) {
      ASSERT_NE(next, std::end(kTreePages));
      SCOPED_TRACE(std::string(next->technology) + " " + next->category);
      Walk walk;
      ASSERT_TRUE(walk.tap<FirstLevelViewController>(technology));
      const auto page = walk.tap<SecondLevelViewController>(row);
      ASSERT_TRUE(page);
      EXPECT_EQ(page->firstSelection(), next->technology);
      EXPECT_EQ(page->seguedThroughRow(), next->category);
      EXPECT_EQ(page->title(), next->category);
      EXPECT_EQ(contents(*page), expectation(next->*expected));
    }
  }
  EXPECT_EQ(next, std::end(kTreePages)) << "43 rows";
}

TEST(SecondLevelViewController, ShowsEveryPageOfTheTreeBeforeAnyMetric) {
  const Intake intake;
  static_assert(std::size(kTreePages) == 43);
  walkTheTree(&PageCase::before);
}

TEST(SecondLevelViewController, ShowsEveryPageOfTheTreeAfterEveryMetric) {
  const Intake intake;
  handleSampleMetrics();
  walkTheTree(&PageCase::after);
}

TEST(SecondLevelViewController, ShowsThePagesThatNoRowOfTheTreeLeadsTo) {
  const Intake intake;
  for (const PageCase& row : kOtherPages)
    EXPECT_EQ(contents(*pageOf(row.technology, row.category)), row.before)
        << row.technology << " " << row.category;
  handleSampleMetrics();
  for (const PageCase& row : kOtherPages)
    EXPECT_EQ(contents(*pageOf(row.technology, row.category)), expectation(row.after))
        << row.technology << " " << row.category;
}

TEST(SecondLevelViewController, ShowsAStoreFieldByField) {
  Intake intake;
  (void)intake.handle(K_CELLULAR_MM_CTXT, "1:0 2:0 4:{1:<62f210> 2:4660} 5:7 9:1");
  const char* shownRows =
      "-\ntimestamp=1970-01-01 00:00:00 UTC\nreg_status=KREG_STATUS_NORMAL_SERVICE\n"
      "lai=[encoded_plmn: <62f210>, lac: 4660]\ntmsi=7\nis_combined_proc=1\n";
  EXPECT_EQ(contents(*pageOf("UMTS", "NAS MM")), shownRows);
  EXPECT_EQ(contents(*pageOf("GSM", "NAS MM")), shownRows);
}

TEST(SecondLevelViewController, ShowsTheHeaderOfASectionThatIsAlone) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:4}");
  EXPECT_EQ(contents(*pageOf("LTE", "CA Status")), "# Component Carrier 0\nindex=4\n");
}

TEST(SecondLevelViewController, ShowsThreeCarriersUnderThreeHeaders) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:0} 2:{1:1} 2:{1:2}");
  EXPECT_EQ(contents(*pageOf("LTE", "CA Status")),
            "# Component Carrier 0\nindex=0\n# Component Carrier 1\nindex=1\n"
            "# Component Carrier 2\nindex=2\n");
}

TEST(SecondLevelViewController, ShowsNoSectionForAnEmptyList) {
  Intake intake;
  handleSampleMetrics();
  for (const SampleMetric& sample : sampleMetrics()) (void)intake.handle(sample.id, std::nullopt);
  int withoutSections = 0;
  for (const PageCase& row : kTreePages) {
    const auto page = pageOf(row.technology, row.category);
    const bool list = std::string_view(row.before).starts_with("#");
    EXPECT_EQ(page->numberOfSectionsInTableView(page->tableView()), list ? 0 : 1)
        << row.technology << " " << row.category;
    if (list) ++withoutSections;
  }
  EXPECT_EQ(withoutSections, 22);
  EXPECT_EQ(contents(*pageOf("LTE", "Serving Cell Meas")), "-\n");
  EXPECT_EQ(contents(*pageOf("LTE", "RRC State")), "-\n");
}

TEST(SecondLevelViewController, LeavesNoDetailOfAnEarlierRowOnAReusedCell) {
  Intake intake;
  (void)intake.handle(K_LTE_RRC_STATE, "2:3");
  const auto page = pageOf("LTE", "RRC State");
  EXPECT_EQ(contents(*page), "-\nstate=KLTE_RRC_STATE_CONNECTED\n");
  page->setSeguedThroughRow("IMSI");
  EXPECT_EQ(contents(*page), kComeBack);
}

TEST(SecondLevelViewController, KeepsTheCellThatItFills) {
  const Intake intake;
  const auto page = pageOf("Device Info", "IMSI");
  EXPECT_FALSE(page->currentCell());
  const Cell cell = page->cellForRowAtIndexPath(page->tableView(), {0, 0});
  EXPECT_EQ(page->currentCell(), cell);
  EXPECT_EQ(cell->reuseIdentifier(), "SecondClickView");
  EXPECT_EQ(cell->textLabel()->text(), "Come back later");
  EXPECT_EQ(cell->detailTextLabel()->text(), "");
}

TEST(SecondLevelViewController, AnswersBothHeightsWithTheAutomaticDimension) {
  const Intake intake;
  const auto page = pageOf("LTE", "NAS");
  EXPECT_EQ(page->heightForRowAtIndexPath(page->tableView(), {0, 0}),
            UITableView::kAutomaticDimension);
  EXPECT_EQ(page->estimatedHeightForRowAtIndexPath(page->tableView(), {3, 9}),
            UITableView::kAutomaticDimension);
}

TEST(SecondLevelViewController, StartsWithoutSelectionsAndWithTheSharedStore) {
  const Intake intake;
  const SecondLevelViewController page;
  EXPECT_EQ(page.firstSelection(), std::nullopt);
  EXPECT_EQ(page.seguedThroughRow(), std::nullopt);
  EXPECT_EQ(page.myMetricValidator(), MetricValidator::sharedInstance());
  EXPECT_EQ(page.tableViewFields().technologies.size(), 4U);
}

TEST(SecondLevelViewController, AnswersFromOneSnapshotUntilTheNextSectionCount) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:0 3:7} 2:{1:1} 2:{1:2}");
  const auto page = pageOf("LTE", "CA Status");
  UITableView& table = page->tableView();
  EXPECT_EQ(page->numberOfSectionsInTableView(table), 3);
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:9}");
  EXPECT_EQ(page->titleForHeaderInSection(table, 2), "Component Carrier 2");
  EXPECT_EQ(page->numberOfRowsInSection(table, 0), 2);
  EXPECT_EQ(page->cellForRowAtIndexPath(table, {0, 1})->detailTextLabel()->text(), "7");
  EXPECT_EQ(page->cellForRowAtIndexPath(table, {2, 0})->detailTextLabel()->text(), "2");
  EXPECT_EQ(page->numberOfSectionsInTableView(table), 1);
  EXPECT_EQ(page->numberOfRowsInSection(table, 0), 1);
  EXPECT_EQ(page->cellForRowAtIndexPath(table, {0, 0})->detailTextLabel()->text(), "9");
}

TEST(SecondLevelViewController, AnswersACellThatIsAskedForFirst) {
  Intake intake;
  (void)intake.handle(K_LTE_RRC_STATE, "2:3");
  const auto page = pageOf("LTE", "RRC State");
  EXPECT_EQ(page->cellForRowAtIndexPath(page->tableView(), {0, 0})->textLabel()->text(), "state");
}

TEST(SecondLevelViewController, StopsTheProcessForAnIndexBeyondItsLists) {
  Intake intake;
  (void)intake.handle(K_LTE_CA_STATUS, "2:{1:0} 2:{1:1}");
  (void)intake.handle(K_LTE_RRC_STATE, "2:3");
  const auto list = pageOf("LTE", "CA Status");
  EXPECT_DEATH((void)list->numberOfRowsInSection(list->tableView(), 2), "");
  EXPECT_DEATH((void)list->numberOfRowsInSection(list->tableView(), -1), "");
  EXPECT_DEATH((void)list->cellForRowAtIndexPath(list->tableView(), {2, 0}), "");
  EXPECT_DEATH((void)list->cellForRowAtIndexPath(list->tableView(), {1, 1}), "");
  const auto plain = pageOf("LTE", "RRC State");
  EXPECT_DEATH((void)plain->cellForRowAtIndexPath(plain->tableView(), {0, 1}), "");
  EXPECT_DEATH((void)plain->cellForRowAtIndexPath(plain->tableView(), {0, -1}), "");
}

TEST(SecondLevelViewController, StopsTheProcessWithoutBothSelections) {
  const Intake intake;
  for (const bool technology : {false, true})
    for (const bool category : {false, true}) {
      if (technology && category) continue;
      const auto page = pageOf("LTE", "NAS");
      if (!technology) page->setFirstSelection(std::nullopt);
      if (!category) page->setSeguedThroughRow(std::nullopt);
      UITableView& table = page->tableView();
      EXPECT_DEATH((void)page->numberOfSectionsInTableView(table), "");
      EXPECT_DEATH((void)page->titleForHeaderInSection(table, 0), "");
      EXPECT_DEATH((void)page->numberOfRowsInSection(table, 0), "");
      EXPECT_DEATH((void)page->cellForRowAtIndexPath(table, {0, 0}), "");
    }
}

TEST(SecondLevelViewController, PrintsALineWhenTheServingCellComesFromBehindTheBridge) {
  Intake intake;
  (void)intake.handle(K_LTE_SCELL_INFO, "2:301 3:6300");
  const auto page = pageOf("LTE", "Serving Cell Info");
  EXPECT_EQ(contents(*page), "-\nphy_cell_id=301\ndl_freq=6300\n");
  EXPECT_THAT(intake.log.printedLines(), IsEmpty());
  intake.validator->setMyLTESCellInfoDict(intake.validator->myLTESCellInfoDict().bridged());
  EXPECT_EQ(page->numberOfSectionsInTableView(page->tableView()), 1);
  EXPECT_EQ(page->numberOfRowsInSection(page->tableView(), 0), 2);
  EXPECT_THAT(intake.log.printedLines(), ElementsAre("You are screwed"));
  EXPECT_EQ(contents(*page), "-\nphy_cell_id=301\ndl_freq=6300\n");
  EXPECT_THAT(intake.log.printedLines(), ElementsAre("You are screwed"));
  (void)intake.handle(K_LTE_SCELL_INFO, "2:301");
  EXPECT_EQ(contents(*page), "-\nphy_cell_id=301\n");
  EXPECT_THAT(intake.log.printedLines(), IsEmpty());
}

TEST(SecondLevelViewController, PrintsNothingElseWhateverComesFromBehindTheBridge) {
  Intake intake;
  handleSampleMetrics();
  for (const StoreRow& row : storeRows())
    (*intake.validator.*row.set)((*intake.validator.*row.get)().bridged());
  intake.validator->myLTE().SelReselCellInfo = intake.validator->myLTE().SelReselCellInfo.bridged();
  intake.validator->myUMTS().SelReselCellInfo =
      intake.validator->myUMTS().SelReselCellInfo.bridged();
  for (const PageCase& row : kTreePages) {
    (void)contents(*pageOf(row.technology, row.category));
    const bool servingCell = std::string_view(row.technology) == "LTE" &&
                             std::string_view(row.category) == "Serving Cell Info";
    EXPECT_EQ(intake.log.printedLines().size(), servingCell ? 1U : 0U)
        << row.technology << " " << row.category;
  }
  for (const PageCase& row : kOtherPages) (void)contents(*pageOf(row.technology, row.category));
  EXPECT_THAT(intake.log.printedLines(), IsEmpty());
  EXPECT_THAT(intake.log.systemLines(), IsEmpty());
}

/// A page whose reloads are counted.
struct ReloadedPage {
  std::shared_ptr<SecondLevelViewController> page;
  std::shared_ptr<int> reloads = std::make_shared<int>(0);

  explicit ReloadedPage(std::shared_ptr<SecondLevelViewController> shownPage)
      : page(std::move(shownPage)) {
    page->tableView().setOnReload([count = reloads] { ++*count; });
  }
};

TEST(SecondLevelViewController, ReloadsEveryFiveSeconds) {
  VirtualClock clock;
  const Intake intake;
  const ReloadedPage reloaded(pageOf("LTE", "NAS"));
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), std::nullopt);
  reloaded.page->loadViewIfNeeded();
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), Milliseconds(5000));
  clock.advance(Milliseconds(4999));
  EXPECT_EQ(*reloaded.reloads, 0);
  clock.advance(Milliseconds(1));
  EXPECT_EQ(*reloaded.reloads, 1);
  clock.advance(Milliseconds(4999));
  EXPECT_EQ(*reloaded.reloads, 1);
  clock.advance(Milliseconds(15001));
  EXPECT_EQ(*reloaded.reloads, 5);
}

TEST(SecondLevelViewController, ReloadsByWayOfTheMainQueue) {
  const Intake intake;
  const ReloadedPage reloaded(pageOf("LTE", "NAS"));
  reloaded.page->update();
  EXPECT_EQ(*reloaded.reloads, 0);
  runMainQueue();
  EXPECT_EQ(*reloaded.reloads, 1);
}

TEST(SecondLevelViewController, LivesAndReloadsOnOnceItWasPopped) {
  VirtualClock clock;
  const Intake intake;
  Walk walk;
  ASSERT_TRUE(walk.tap<FirstLevelViewController>(1));
  auto reloaded = std::make_unique<ReloadedPage>(walk.tap<SecondLevelViewController>(0));
  const std::weak_ptr<SecondLevelViewController> page = reloaded->page;
  const auto reloads = reloaded->reloads;
  ASSERT_EQ(walk.navigation().popViewController(), reloaded->page);
  reloaded.reset();
  ASSERT_FALSE(page.expired()) << "its timer holds it";
  clock.advance(Milliseconds(10000));
  EXPECT_EQ(*reloads, 2);
  EXPECT_FALSE(page.expired());
}

TEST(SecondLevelViewController, ShowsNewValuesWithinFiveSecondsWithoutATouch) {
  VirtualClock clock;
  Intake intake;
  Walk walk;
  ASSERT_TRUE(walk.tap<FirstLevelViewController>(1));
  const auto page = walk.tap<SecondLevelViewController>(5);
  std::string onScreen = contents(*page);
  page->tableView().setOnReload([&] { onScreen = contents(*page); });
  const std::string before = onScreen;
  EXPECT_THAT(before, ::testing::StartsWith("-\ntimestamp=\nims_emergency_support=\n"));
  clock.advance(Milliseconds(1000));
  intake.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_SEL_RESEL_INFO, wire("1:0 3:1")));
  clock.advance(Milliseconds(3999));
  EXPECT_EQ(onScreen, before);
  clock.advance(Milliseconds(1));
  EXPECT_THAT(onScreen, ::testing::StartsWith("-\ntimestamp=1970-01-01 00:00:00 UTC\n"
                                              "ims_emergency_support=1\n"
                                              "ac_barring_for_emergency=\n"));
}

TEST(SecondLevelViewController, TellsWhenItsMetricLastCame) {
  VirtualClock clock;
  Intake intake;
  const auto page = pageOf("LTE", "EUTRA Neighbor Info");
  ASSERT_TRUE(page->lastReport());
  EXPECT_EQ(page->lastReport()->uptime, std::nullopt);
  clock.advance(Milliseconds(1200));
  (void)intake.handle(K_LTE_SEL_RESEL_INFO, "1:0");
  EXPECT_EQ(page->lastReport()->uptime, Milliseconds(1200));
  EXPECT_EQ(pageOf("LTE", "NAS")->lastReport()->uptime, std::nullopt);
  EXPECT_FALSE(pageOf("Device Info", "IMSI")->lastReport());
}

TEST(SecondLevelViewController, LeadsToTheThirdLevelWithoutPreparingIt) {
  const Intake intake;
  const auto page = pageOf("LTE", "NAS");
  UITableViewCell cell({"SecondClickView", CellStyle::detail});
  cell.textLabel()->setText("guti");
  const auto destination = std::make_shared<ThirdLevelViewController>();
  UIStoryboardSegue segue{"", page, destination};
  page->prepareForSegue(segue, &cell);
  EXPECT_EQ(destination->firstSelection(), std::nullopt);
  EXPECT_EQ(destination->secondSelection(), std::nullopt);
  EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
}

}  // namespace
}  // namespace quorin::test
