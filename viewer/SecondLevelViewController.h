#pragma once

#include "viewer/page_tree.h"
#include "viewer/pages.h"

namespace quorin {

/// Level 2: the fields of one category, read from the store anew every five seconds.
/// Its timer holds it and is never invalidated: a popped page lives and reloads on. Meant.
class SecondLevelViewController : public UITableViewController {
 public:
  [[nodiscard]] const std::optional<std::string>& firstSelection() const { return _firstSelection; }
  void setFirstSelection(std::optional<std::string> technology) {
    _firstSelection = std::move(technology);
  }
  [[nodiscard]] const std::optional<std::string>& seguedThroughRow() const {
    return _seguedThroughRow;
  }
  void setSeguedThroughRow(std::optional<std::string> category) {
    _seguedThroughRow = std::move(category);
  }
  [[nodiscard]] const Cell& currentCell() const { return _currentCell; }
  [[nodiscard]] const PageTree& tableViewFields() const { return _tableViewFields; }
  [[nodiscard]] const std::shared_ptr<MetricValidator>& myMetricValidator() const {
    return _myMetricValidator;
  }

  void viewDidLoad() override;
  /// Reloads the table, by way of the main queue.
  void update();

  /// Each is fatal without both selections, and for an index beyond its list. The section count
  /// takes the snapshot of the store that headers, row counts and cells then answer from.
  [[nodiscard]] std::ptrdiff_t numberOfSectionsInTableView(UITableView& tableView) override;
  [[nodiscard]] std::optional<std::string> titleForHeaderInSection(UITableView& tableView,
                                                                   std::ptrdiff_t section) override;
  [[nodiscard]] std::ptrdiff_t numberOfRowsInSection(UITableView& tableView,
                                                     std::ptrdiff_t section) override;
  [[nodiscard]] Cell cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) override;
  [[nodiscard]] double heightForRowAtIndexPath(UITableView& tableView,
                                               NSIndexPath indexPath) override;
  [[nodiscard]] double estimatedHeightForRowAtIndexPath(UITableView& tableView,
                                                        NSIndexPath indexPath) override;

  [[nodiscard]] std::optional<LastReport> lastReport() const override;
  /// Answers from the snapshot, too.
  [[nodiscard]] Annotation annotationForRowAtIndexPath(UITableView& tableView,
                                                       NSIndexPath indexPath) override;

 private:
  /// The store's sections as one question sees them; no page under the key: null.
  struct Answer {
    const PageRow* page = nullptr;
    std::vector<Dictionary> sections;
  };
  struct Snapshot {
    Answer counts;
    Answer cells;
  };

  struct ShownRow {
    std::string text;
    std::string detail;
  };

  [[nodiscard]] std::string pageKey() const;
  [[nodiscard]] Answer answer(Question question) const;
  const Snapshot& takeSnapshot();
  /// The row as the snapshot has it; empty: there is no page.
  [[nodiscard]] std::optional<ShownRow> shownRow(NSIndexPath indexPath);
  const Snapshot& snapshot() { return _snapshot ? *_snapshot : takeSnapshot(); }

  std::optional<std::string> _firstSelection;
  std::optional<std::string> _seguedThroughRow;
  Cell _currentCell;
  std::shared_ptr<MetricValidator> _myMetricValidator = MetricValidator::sharedInstance();
  PageTree _tableViewFields = buildPageTree();
  std::optional<Snapshot> _snapshot;
};

}  // namespace quorin
