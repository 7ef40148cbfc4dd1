#include "viewer/FirstLevelViewController.h"

#include "tests/support/walk.h"
#include "viewer/SecondLevelViewController.h"
#include "viewer/ThirdLevelViewController.h"

namespace quorin::test {
namespace {

constexpr UIScene kScene{"FirstLevelViewController", nullptr, {"FirstClickView", CellStyle::basic}};

struct Technology {
  std::ptrdiff_t row;
  const char* name;
  const char* shown;
};

constexpr Technology kTechnologies[] = {
    {0, "Device Info", "-\nIMSI=\nIMEISV=\nSIM Files=\n"},
    {1, "LTE",
     "-\nNAS=\nRRC State=\nServing Cell Info=\nServing Cell Meas=\nTx Power=\nSel Resel "
     "Parameters=\nEUTRA Neighbor Info=\nC-DRX=\nLTE Neighbor Cell Meas=\nUMTS Neighbor Cell "
     "Meas=\nGSM Neighbor Cell Meas=\nCA Status=\nSecondary Cell Meas=\nActive Bearers=\n"},
    {2, "UMTS",
     "-\nNAS GMM=\nNAS MM=\nRRC State=\nRRC Configuration=\nServing Cell Info=\nServing Cell "
     "Meas=\nTx Power=\nSel Resel Parameters=\nEUTRA Neighbor Info=\nUTRA Neighbor Info=\nGSM "
     "Neighbor Info=\nLTE Neighbor Cell Meas=\nUMTS Neighbor Cell Meas=\nGSM Neighbor Cell "
     "Meas=\nActive Bearers=\n"},
    {3, "GSM",
     "-\nNAS GMM=\nNAS MM=\nServing Cell Info=\nIdle Config=\nIdle Serv Cell Meas=\nConnected Serv "
     "Cell Meas=\nGSM GPRS Config=\nLTE Neighbor Cell Meas=\nUMTS Neighbor Cell Meas=\nGSM "
     "Neighbor Cell Meas=\nActive Bearers=\n"},
};

TEST(FirstLevelViewController, ShowsTheCategoriesOfTheTappedTechnology) {
  const ScriptedService service;
  for (const Technology& technology : kTechnologies) {
    Walk walk;
    const auto page = walk.tap<FirstLevelViewController>(technology.row);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->seguedThroughRow(), technology.name);
    EXPECT_EQ(page->title(), technology.name);
    EXPECT_EQ(contents(*page), technology.shown);
  }
}

TEST(FirstLevelViewController, CountsFourteenRowsUnderLteAndThreeUnderDeviceInfo) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.setSeguedThroughRow("LTE");
  EXPECT_EQ(page.numberOfSectionsInTableView(page.tableView()), 1);
  EXPECT_EQ(page.numberOfRowsInSection(page.tableView(), 0), 14);
  page.setSeguedThroughRow("Device Info");
  EXPECT_EQ(page.numberOfRowsInSection(page.tableView(), 0), 3);
}

TEST(FirstLevelViewController, StartsWithoutATechnologyAndWithTheSharedStore) {
  const ScriptedService service;
  const FirstLevelViewController page;
  EXPECT_EQ(page.seguedThroughRow(), std::nullopt);
  EXPECT_EQ(page.myMetricValidator(), MetricValidator::sharedInstance());
  EXPECT_EQ(page.tableViewFields().technologies.size(), 4U);
}

TEST(FirstLevelViewController, FillsCellsOfItsOwnKind) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.initWithCoder(kScene);
  page.setSeguedThroughRow("LTE");
  const Cell cell = page.cellForRowAtIndexPath(page.tableView(), {0, 7});
  EXPECT_EQ(cell->reuseIdentifier(), "FirstClickView");
  EXPECT_EQ(cell->textLabel()->text(), "C-DRX");
}

TEST(FirstLevelViewController, StopsTheProcessWithoutATechnologyOfTheTree) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.initWithCoder(kScene);
  EXPECT_DEATH((void)page.numberOfRowsInSection(page.tableView(), 0), "");
  EXPECT_DEATH((void)page.cellForRowAtIndexPath(page.tableView(), {0, 0}), "");
  for (const char* technology : {"", "lte", "LTE ", "NR"}) {
    page.setSeguedThroughRow(technology);
    EXPECT_DEATH((void)page.numberOfRowsInSection(page.tableView(), 0), "");
  }
  page.setSeguedThroughRow("LTE");
  EXPECT_DEATH((void)page.cellForRowAtIndexPath(page.tableView(), {0, 14}), "");
}

TEST(FirstLevelViewController, HandsItsTechnologyAndTheTappedCellsTextOn) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.setSeguedThroughRow("LTE");
  UITableViewCell cell({"FirstClickView", CellStyle::basic});
  cell.textLabel()->setText("what was tapped");
  const auto destination = std::make_shared<SecondLevelViewController>();
  UIStoryboardSegue segue{"any", nullptr, destination};
  page.prepareForSegue(segue, &cell);
  EXPECT_EQ(destination->firstSelection(), "LTE");
  EXPECT_EQ(destination->seguedThroughRow(), "what was tapped");
}

TEST(FirstLevelViewController, HandsNoCategoryForACellWithoutText) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.setSeguedThroughRow("LTE");
  for (const CellStyle style : {CellStyle::basic, CellStyle::custom}) {
    UITableViewCell cell({"FirstClickView", style});
    const auto destination = std::make_shared<SecondLevelViewController>();
    destination->setSeguedThroughRow("before");
    UIStoryboardSegue segue{"", nullptr, destination};
    page.prepareForSegue(segue, &cell);
    EXPECT_EQ(destination->firstSelection(), "LTE");
    EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
  }
}

TEST(FirstLevelViewController, LeavesTheDestinationAloneWithoutACellAsSender) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.setSeguedThroughRow("LTE");
  const auto destination = std::make_shared<SecondLevelViewController>();
  UIStoryboardSegue segue{"", nullptr, destination};
  page.prepareForSegue(segue, nullptr);
  page.prepareForSegue(segue, &page);
  EXPECT_EQ(destination->firstSelection(), std::nullopt);
  EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
}

TEST(FirstLevelViewController, LeavesAnotherKindOfDestinationAlone) {
  const ScriptedService service;
  FirstLevelViewController page;
  page.setSeguedThroughRow("LTE");
  UITableViewCell cell({"FirstClickView", CellStyle::basic});
  cell.textLabel()->setText("NAS");
  const auto destination = std::make_shared<ThirdLevelViewController>();
  UIStoryboardSegue segue{"", nullptr, destination};
  page.prepareForSegue(segue, &cell);
  EXPECT_EQ(destination->firstSelection(), std::nullopt);
  EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
}

TEST(FirstLevelViewController, NeverRefreshes) {
  VirtualClock clock;
  const ScriptedService service;
  Walk walk;
  const auto page = walk.tap<FirstLevelViewController>(1);
  ASSERT_TRUE(page->isViewLoaded());
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), std::nullopt);
  EXPECT_FALSE(page->lastReport());
}

}  // namespace
}  // namespace quorin::test
