#include "platform/text/TextScreen.h"

#include <algorithm>

#include "platform/foundation/log.h"
#include "platform/screen/ScreenPage.h"
#include "platform/text/columns.h"

namespace quorin {

namespace {

std::vector<std::string> rowTexts(UITableViewController& page) {
  std::vector<std::string> texts;
  for (const SectionContents& section : contentsOf(page))
    for (const auto& row : section.rows) texts.push_back(row.text);
  return texts;
}

}  // namespace

std::vector<std::string> TextScreen::openPages(UIApplication& application,
                                               std::set<std::string> keys) {
  const bool all = keys.empty();
  UINavigationController& navigation = application.navigation();
  auto& first = dynamic_cast<UITableViewController&>(*navigation.topViewController());
  const auto technologies = rowTexts(first);
  for (std::size_t i = 0; i < technologies.size(); ++i) {
    const Page list =
        selectRow(application.storyboard(), navigation, {0, static_cast<std::ptrdiff_t>(i)});
    const auto categories = rowTexts(dynamic_cast<UITableViewController&>(*list));
    for (std::size_t j = 0; j < categories.size(); ++j) {
      std::string key = technologies[i] + " " + categories[j];
      if (!all && keys.erase(key) == 0) continue;
      watch(std::move(key),
            selectRow(application.storyboard(), navigation, {0, static_cast<std::ptrdiff_t>(j)}));
      navigation.popViewController();
    }
    navigation.popViewController();
  }
  return {keys.begin(), keys.end()};
}

void TextScreen::watch(std::string key, const Page& page) {
  const auto table = std::dynamic_pointer_cast<UITableViewController>(page);
  auto& open = *_pages.emplace_back(
      std::make_unique<OpenPage>(OpenPage{std::move(key), table, contentsOf(*table)}));
  table->tableView().setOnReload([this, &open] {
    auto contents = contentsOf(*open.page);
    if (contents == open.shown) return;
    open.shown = std::move(contents);
    print(open);
  });
}

void TextScreen::printAll() {
  for (const auto& open : _pages) {
    open->shown = contentsOf(*open->page);
    print(*open);
  }
}

void TextScreen::print(const OpenPage& open) const {
  const auto report = open.page->lastReport();
  std::string text = "\n" + _style.headline + open.key + _style.end;
  if (report) text += "   " + _style.quiet + ageText(*report) + _style.end;
  text += '\n';
  bool empty = true;
  std::size_t width = 0;
  for (const SectionContents& section : open.shown)
    for (const auto& row : section.rows) width = std::max(width, columnsOf(row.text));
  for (const SectionContents& section : open.shown) {
    if (section.header) text += "  " + _style.quiet + *section.header + _style.end + '\n';
    for (const auto& row : section.rows) {
      empty = false;
      std::string line = "    " + printable(row.text);
      if (!row.detail.empty())
        line.append(width - columnsOf(row.text) + 2, ' ').append(printable(row.detail));
      text += line + '\n';
    }
  }
  if (empty) text += "    " + _style.quiet + "No entries" + _style.end + '\n';
  writeOut(text);
}

}  // namespace quorin
