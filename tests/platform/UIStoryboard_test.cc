#include "platform/toolkit/UIStoryboard.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

/// Three sections: a header and two rows, no header and none, and one row that is empty. The first
/// section's rows have annotations.
class SomePage final : public UITableViewController {
 public:
  std::ptrdiff_t numberOfSectionsInTableView(UITableView&) override { return 3; }
  std::ptrdiff_t numberOfRowsInSection(UITableView&, std::ptrdiff_t section) override {
    return 2 - section > 0 ? (section == 0 ? 2 : 0) : 1;
  }
  std::optional<std::string> titleForHeaderInSection(UITableView&,
                                                     std::ptrdiff_t section) override {
    return section == 0 ? std::optional<std::string>("first") : std::nullopt;
  }
  Cell cellForRowAtIndexPath(UITableView& table, NSIndexPath at) override {
    Cell cell = table.dequeueReusableCellWithIdentifier("cell", at);
    const bool named = at.section == 0;
    cell->textLabel()->setText(named ? std::optional("row " + std::to_string(at.row))
                                     : std::nullopt);
    cell->detailTextLabel()->setText(named ? std::optional<std::string>("detail") : std::nullopt);
    return cell;
  }
  Annotation annotationForRowAtIndexPath(UITableView&, NSIndexPath at) override {
    if (at.section != 0) return {};
    return {"dBm", "meaning of row " + std::to_string(at.row), "clause"};
  }
  void prepareForSegue(UIStoryboardSegue& segue, UIResponder* sender) override {
    prepared = segue.destination;
    loadedWhenPrepared = segue.destination->isViewLoaded();
    tapped = dynamic_cast<UITableViewCell*>(sender)->textLabel()->text();
  }
  Page prepared;
  bool loadedWhenPrepared = true;
  std::optional<std::string> tapped;
};

constexpr UIScene kScenes[] = {
    {"First",
     []() -> Page { return std::make_shared<SomePage>(); },
     {"cell", CellStyle::detail},
     "Fixed",
     "Second"},
    {"Second", []() -> Page { return std::make_shared<SomePage>(); }, {"cell", CellStyle::detail}},
};
constexpr UIStoryboard kStoryboard{{}, "First", "First", kScenes};

TEST(UIStoryboard, MakesAPageFromItsScene) {
  const Page page = kStoryboard.instantiate("First");
  EXPECT_EQ(page->scene(), &kScenes[0]);
  EXPECT_EQ(page->title(), "Fixed");
  EXPECT_EQ(kStoryboard.scene("Third"), nullptr);
  EXPECT_DEATH((void)kStoryboard.instantiate("Third"), "");
}

TEST(SelectRow, PreparesThePageWithTheTappedCellBeforeItsViewLoads) {
  UINavigationController navigation;
  const auto first = std::dynamic_pointer_cast<SomePage>(kStoryboard.instantiate("First"));
  navigation.pushViewController(first);
  const Page opened = selectRow(kStoryboard, navigation, {0, 1});
  ASSERT_TRUE(opened);
  EXPECT_EQ(first->prepared, opened);
  EXPECT_FALSE(first->loadedWhenPrepared);
  EXPECT_EQ(first->tapped, "row 1");
  EXPECT_TRUE(opened->isViewLoaded());
  EXPECT_EQ(opened->title(), "row 1") << "the text that was tapped";
  EXPECT_EQ(navigation.topViewController(), opened);
  EXPECT_FALSE(selectRow(kStoryboard, navigation, {0, 0})) << "it leads nowhere";
  EXPECT_EQ(navigation.topViewController(), opened);
}

TEST(ContentsOf, AsksForEverySectionWithItsHeaderItsRowsAndTheirAnnotations) {
  const auto page = std::dynamic_pointer_cast<SomePage>(kStoryboard.instantiate("First"));
  const std::vector<SectionContents> expected = {
      {"first",
       {{"row 0", "detail", {"dBm", "meaning of row 0", "clause"}},
        {"row 1", "detail", {"dBm", "meaning of row 1", "clause"}}}},
      {std::nullopt, {}},
      {std::nullopt, {{"", ""}}},
  };
  EXPECT_EQ(contentsOf(*page), expected);
}

}  // namespace
}  // namespace quorin::test
