#include "viewer/ThirdLevelViewController.h"

#include "tests/support/sample_metrics.h"
#include "tests/support/walk.h"
#include "viewer/FirstLevelViewController.h"
#include "viewer/SecondLevelViewController.h"

namespace quorin::test {
namespace {

constexpr UIScene kScene{
    "ThirdLevelViewController", nullptr, {"ThirdClickView", CellStyle::basic, "as it comes"}};

TEST(ThirdLevelViewController, OpensFromAnyRowWithItsSelectionsEmpty) {
  const RecordedLog log;
  const ScriptedService service;
  handleSampleMetrics();
  for (const std::ptrdiff_t row : {0, 3}) {
    Walk walk;
    ASSERT_TRUE(walk.tap<FirstLevelViewController>(1));
    ASSERT_TRUE(walk.tap<SecondLevelViewController>(1));
    const auto page = walk.tap<ThirdLevelViewController>(row);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->firstSelection(), std::nullopt);
    EXPECT_EQ(page->secondSelection(), std::nullopt);
    EXPECT_EQ(page->seguedThroughRow(), std::nullopt);
    EXPECT_EQ(page->title(), "Field");
    EXPECT_EQ(contents(*page), "-\nField=\n");
    EXPECT_FALSE(walk.tap<UITableViewController>(0)) << "its row leads nowhere";
  }
}

TEST(ThirdLevelViewController, ShowsItsOneCellAsTheDescriptionHasIt) {
  ThirdLevelViewController page;
  page.initWithCoder(kScene);
  page.loadViewIfNeeded();
  page.didReceiveMemoryWarning();
  EXPECT_EQ(page.numberOfSectionsInTableView(page.tableView()), 1);
  EXPECT_EQ(page.numberOfRowsInSection(page.tableView(), 0), 1);
  const Cell cell = page.cellForRowAtIndexPath(page.tableView(), {0, 0});
  EXPECT_EQ(cell->reuseIdentifier(), "ThirdClickView");
  EXPECT_EQ(cell->textLabel()->text(), "as it comes");
  cell->textLabel()->setText("left by somebody");
  page.tableView().reuse(cell);
  EXPECT_EQ(page.cellForRowAtIndexPath(page.tableView(), {0, 0})->textLabel()->text(),
            "left by somebody");
}

TEST(ThirdLevelViewController, ReadsNoSelection) {
  ThirdLevelViewController page;
  page.initWithCoder(kScene);
  const std::string before = contents(page);
  page.setFirstSelection("LTE");
  page.setSecondSelection("NAS");
  page.setSeguedThroughRow("guti");
  EXPECT_EQ(page.firstSelection(), "LTE");
  EXPECT_EQ(page.secondSelection(), "NAS");
  EXPECT_EQ(page.seguedThroughRow(), "guti");
  EXPECT_EQ(contents(page), before);
  EXPECT_EQ(page.tableViewFields().technologies.size(), 4U);
}

}  // namespace
}  // namespace quorin::test
