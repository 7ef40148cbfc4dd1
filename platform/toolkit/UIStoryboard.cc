#include "platform/toolkit/UIStoryboard.h"

#include <algorithm>

#include "platform/foundation/fatal.h"

namespace quorin {

namespace {

std::string textOf(const UILabel* label) {
  return label && label->text() ? *label->text() : std::string();
}

}  // namespace

const UIScene* UIStoryboard::scene(std::string_view className) const {
  const auto found = std::ranges::find(scenes, className, &UIScene::className);
  return found == scenes.end() ? nullptr : &*found;
}

Page UIStoryboard::instantiate(std::string_view className) const {
  const UIScene* found = scene(className);
  if (!found) fatal();
  Page page = found->make();
  page->initWithCoder(*found);
  return page;
}

Page selectRow(const UIStoryboard& storyboard, UINavigationController& navigation,
               NSIndexPath indexPath) {
  const auto source =
      std::dynamic_pointer_cast<UITableViewController>(navigation.topViewController());
  if (!source || !source->scene() || source->scene()->segueTo.empty()) return nullptr;
  const Cell cell = source->cellForRowAtIndexPath(source->tableView(), indexPath);
  UIStoryboardSegue segue{"", source, storyboard.instantiate(source->scene()->segueTo)};
  if (segue.destination->title().empty()) segue.destination->setTitle(textOf(cell->textLabel()));
  source->prepareForSegue(segue, cell.get());
  source->tableView().reuse(cell);
  navigation.pushViewController(segue.destination);
  return segue.destination;
}

std::vector<SectionContents> contentsOf(UITableViewController& page) {
  UITableView& table = page.tableView();
  std::vector<SectionContents> sections(
      static_cast<std::size_t>(page.numberOfSectionsInTableView(table)));
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const auto section = static_cast<std::ptrdiff_t>(i);
    sections[i].header = page.titleForHeaderInSection(table, section);
    const std::ptrdiff_t rows = page.numberOfRowsInSection(table, section);
    for (std::ptrdiff_t row = 0; row < rows; ++row) {
      const Cell cell = page.cellForRowAtIndexPath(table, {section, row});
      sections[i].rows.push_back({textOf(cell->textLabel()), textOf(cell->detailTextLabel()),
                                  page.annotationForRowAtIndexPath(table, {section, row})});
      table.reuse(cell);
    }
  }
  return sections;
}

}  // namespace quorin
