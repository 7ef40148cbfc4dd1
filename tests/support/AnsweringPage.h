#pragma once

#include "platform/platform.h"

namespace quorin::test {

using Section = SectionContents;

/// A page that answers what a test says.
class AnsweringPage final : public UITableViewController {
 public:
  std::vector<Section> sections;
  std::optional<LastReport> report = LastReport{};

  AnsweringPage() { tableView().registerPrototype({"cell", CellStyle::detail}); }

  std::ptrdiff_t numberOfSectionsInTableView(UITableView& /*tableView*/) override {
    return std::ssize(sections);
  }
  std::ptrdiff_t numberOfRowsInSection(UITableView& /*tableView*/,
                                       std::ptrdiff_t section) override {
    return std::ssize(sections[static_cast<std::size_t>(section)].rows);
  }
  std::optional<std::string> titleForHeaderInSection(UITableView& /*tableView*/,
                                                     std::ptrdiff_t section) override {
    return sections[static_cast<std::size_t>(section)].header;
  }
  Cell cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) override {
    Cell cell = tableView.dequeueReusableCellWithIdentifier("cell", indexPath);
    const auto& row = rowAt(indexPath);
    cell->textLabel()->setText(row.text);
    cell->detailTextLabel()->setText(row.detail);
    return cell;
  }
  Annotation annotationForRowAtIndexPath(UITableView& /*tableView*/,
                                         NSIndexPath indexPath) override {
    return rowAt(indexPath).annotation;
  }
  [[nodiscard]] std::optional<LastReport> lastReport() const override { return report; }

 private:
  const Section::Row& rowAt(NSIndexPath path) const {
    return sections[static_cast<std::size_t>(path.section)]
        .rows[static_cast<std::size_t>(path.row)];
  }
};

}  // namespace quorin::test
