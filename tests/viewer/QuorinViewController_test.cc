#include "viewer/QuorinViewController.h"

#include "tests/support/walk.h"
#include "viewer/FirstLevelViewController.h"
#include "viewer/ThirdLevelViewController.h"

namespace quorin::test {
namespace {

constexpr UIScene kScene{"QuorinViewController", nullptr, {"LaunchView", CellStyle::basic}, "Any"};
constexpr UIScene kCustomScene{"QuorinViewController", nullptr, {"LaunchView", CellStyle::custom}};

TEST(QuorinViewController, ShowsTheFourTechnologiesInOneSection) {
  const ScriptedService service;
  Walk walk;
  const auto page =
      std::dynamic_pointer_cast<QuorinViewController>(walk.navigation().topViewController());
  ASSERT_TRUE(page);
  EXPECT_EQ(contents(*page), "-\nDevice Info=\nLTE=\nUMTS=\nGSM=\n");
  EXPECT_EQ(page->numberOfSectionsInTableView(page->tableView()), 1);
  for (const std::ptrdiff_t section : {0, 1, 7})
    EXPECT_EQ(page->numberOfRowsInSection(page->tableView(), section), 4);
  EXPECT_EQ(page->title(), "Quorin");
}

TEST(QuorinViewController, FillsCellsOfItsOwnKind) {
  QuorinViewController page;
  page.initWithCoder(kScene);
  const Cell cell = page.cellForRowAtIndexPath(page.tableView(), {0, 2});
  EXPECT_EQ(cell->reuseIdentifier(), "LaunchView");
  EXPECT_EQ(cell->textLabel()->text(), "UMTS");
  EXPECT_FALSE(cell->detailTextLabel());
}

TEST(QuorinViewController, GivesACellWithoutATextLabelAsItIs) {
  QuorinViewController page;
  page.initWithCoder(kCustomScene);
  const Cell cell = page.cellForRowAtIndexPath(page.tableView(), {0, 0});
  ASSERT_TRUE(cell);
  EXPECT_FALSE(cell->textLabel());
}

TEST(QuorinViewController, StopsTheProcessForARowBeyondTheTechnologies) {
  QuorinViewController page;
  page.initWithCoder(kScene);
  EXPECT_DEATH((void)page.cellForRowAtIndexPath(page.tableView(), {0, 4}), "");
  EXPECT_DEATH((void)page.cellForRowAtIndexPath(page.tableView(), {0, -1}), "");
}

TEST(QuorinViewController, HandsTheTappedCellsTextToTheCategoryList) {
  const ScriptedService service;
  QuorinViewController page;
  UITableViewCell cell({"LaunchView", CellStyle::basic});
  cell.textLabel()->setText("whatever the label says");
  for (const char* identifier : {"", "show", "anything"}) {
    const auto destination = std::make_shared<FirstLevelViewController>();
    UIStoryboardSegue segue{identifier, nullptr, destination};
    page.prepareForSegue(segue, &cell);
    EXPECT_EQ(destination->seguedThroughRow(), "whatever the label says");
  }
}

TEST(QuorinViewController, HandsNothingForALabelWithoutText) {
  const ScriptedService service;
  QuorinViewController page;
  UITableViewCell cell({"LaunchView", CellStyle::basic});
  const auto destination = std::make_shared<FirstLevelViewController>();
  destination->setSeguedThroughRow("before");
  UIStoryboardSegue segue{"", nullptr, destination};
  page.prepareForSegue(segue, &cell);
  EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
}

TEST(QuorinViewController, LeavesTheDestinationAloneWithoutACellAsSender) {
  const ScriptedService service;
  QuorinViewController page;
  const auto destination = std::make_shared<FirstLevelViewController>();
  destination->setSeguedThroughRow("before");
  UIStoryboardSegue segue{"", nullptr, destination};
  page.prepareForSegue(segue, nullptr);
  page.prepareForSegue(segue, &page);
  EXPECT_EQ(destination->seguedThroughRow(), "before");
}

TEST(QuorinViewController, LeavesAnotherKindOfDestinationAlone) {
  QuorinViewController page;
  UITableViewCell cell({"LaunchView", CellStyle::basic});
  cell.textLabel()->setText("LTE");
  const auto destination = std::make_shared<ThirdLevelViewController>();
  UIStoryboardSegue segue{"", nullptr, destination};
  page.prepareForSegue(segue, &cell);
  UITableViewCell withoutLabel({"LaunchView", CellStyle::custom});
  page.prepareForSegue(segue, &withoutLabel);
  EXPECT_EQ(destination->seguedThroughRow(), std::nullopt);
}

TEST(QuorinViewController, StopsTheProcessForACellWithoutATextLabel) {
  const ScriptedService service;
  QuorinViewController page;
  UITableViewCell cell({"LaunchView", CellStyle::custom});
  UIStoryboardSegue segue{"", nullptr, std::make_shared<FirstLevelViewController>()};
  EXPECT_DEATH(page.prepareForSegue(segue, &cell), "");
}

TEST(QuorinViewController, KeepsTheArgumentsOfItsThreeInitialisersInItsBase) {
  const Bundle bundle("/anywhere");
  QuorinViewController styled;
  EXPECT_EQ(styled.style(), UITableViewStyle::plain);
  styled.initWithStyle(UITableViewStyle::grouped);
  EXPECT_EQ(styled.style(), UITableViewStyle::grouped);
  QuorinViewController named;
  named.initWithNibName("Technologies", &bundle);
  EXPECT_EQ(named.nibName(), "Technologies");
  EXPECT_EQ(named.nibBundle(), &bundle);
  QuorinViewController coded;
  coded.initWithCoder(kScene);
  EXPECT_EQ(coded.scene(), &kScene);
  EXPECT_EQ(coded.title(), "Any");
}

TEST(QuorinViewController, ReadsNoMetricAndNeverRefreshes) {
  VirtualClock clock;
  QuorinViewController page;
  page.initWithCoder(kScene);
  int reloads = 0;
  page.tableView().setOnReload([&] { ++reloads; });
  page.loadViewIfNeeded();
  page.didReceiveMemoryWarning();
  clock.advance(Milliseconds(60000));
  EXPECT_EQ(reloads, 0);
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), std::nullopt);
  EXPECT_FALSE(page.lastReport());
}

}  // namespace
}  // namespace quorin::test
