#include "platform/toolkit/UITableView.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(UITableView, MakesCellsAfterTheirPrototypes) {
  UITableView table;
  table.registerPrototype({"basic", CellStyle::basic, "as drawn"});
  table.registerPrototype({"detail", CellStyle::detail});
  table.registerPrototype({"custom", CellStyle::custom});
  const Cell basic = table.dequeueReusableCellWithIdentifier("basic", {});
  EXPECT_EQ(basic->textLabel()->text(), "as drawn");
  EXPECT_FALSE(basic->detailTextLabel());
  const Cell detail = table.dequeueReusableCellWithIdentifier("detail", {});
  EXPECT_EQ(detail->textLabel()->text(), std::nullopt);
  EXPECT_EQ(detail->detailTextLabel()->text(), std::nullopt);
  const Cell custom = table.dequeueReusableCellWithIdentifier("custom", {});
  EXPECT_FALSE(custom->textLabel());
  EXPECT_FALSE(custom->detailTextLabel());
}

TEST(UITableView, HandsOutACellThatWasGivenBackWithItsOldTexts) {
  UITableView table;
  table.registerPrototype({"a", CellStyle::basic});
  table.registerPrototype({"b", CellStyle::basic});
  const Cell cell = table.dequeueReusableCellWithIdentifier("a", {});
  cell->textLabel()->setText("old");
  table.reuse(cell);
  EXPECT_NE(table.dequeueReusableCellWithIdentifier("b", {}), cell) << "another kind";
  EXPECT_EQ(table.dequeueReusableCellWithIdentifier("a", {}), cell);
  EXPECT_EQ(cell->textLabel()->text(), "old");
  EXPECT_NE(table.dequeueReusableCellWithIdentifier("a", {}), cell) << "it is in use";
}

TEST(UITableView, StopsTheProcessForAKindOfCellThatThereIsNot) {
  UITableView table;
  EXPECT_DEATH((void)table.dequeueReusableCellWithIdentifier("a", {}), "");
}

TEST(UITableView, TellsTheToolkitToReload) {
  UITableView table;
  table.reloadData();
  int reloads = 0;
  table.setOnReload([&] { ++reloads; });
  table.reloadData();
  EXPECT_EQ(reloads, 1);
}

}  // namespace
}  // namespace quorin::test
