#include "platform/toolkit/UIViewController.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

/// Counts how often its view loads.
class CountedPage final : public UIViewController {
 public:
  void viewDidLoad() override { ++loads; }
  int loads = 0;
};

TEST(UIViewController, LoadsItsViewOnce) {
  CountedPage page;
  EXPECT_FALSE(page.isViewLoaded());
  page.loadViewIfNeeded();
  page.loadViewIfNeeded();
  EXPECT_TRUE(page.isViewLoaded());
  EXPECT_EQ(page.loads, 1);
}

/// A table that overrides what it must and no more.
class BareTable final : public UITableViewController {
 public:
  std::ptrdiff_t numberOfRowsInSection(UITableView&, std::ptrdiff_t) override { return 1; }
  Cell cellForRowAtIndexPath(UITableView&, NSIndexPath) override { return nullptr; }
};

TEST(UITableViewController, HasNoAnnotationUnlessAPageGivesOne) {
  BareTable table;
  EXPECT_EQ(table.annotationForRowAtIndexPath(table.tableView(), {0, 0}), Annotation());
}

TEST(UINavigationController, ShowsTheLatestPageAndKeepsItsOnlyOne) {
  UINavigationController navigation;
  EXPECT_FALSE(navigation.topViewController());
  EXPECT_FALSE(navigation.popViewController());
  const auto first = std::make_shared<CountedPage>();
  const auto second = std::make_shared<CountedPage>();
  navigation.pushViewController(first);
  navigation.pushViewController(second);
  EXPECT_EQ(navigation.topViewController(), second);
  EXPECT_THAT(navigation.viewControllers(), ElementsAre(first, second));
  EXPECT_EQ(first->loads + second->loads, 2);
  EXPECT_EQ(navigation.popViewController(), second);
  EXPECT_FALSE(navigation.popViewController());
  EXPECT_EQ(navigation.topViewController(), first);
}

}  // namespace
}  // namespace quorin::test
