#pragma once

#include "metrics/MetricValidator.h"
#include "viewer/page_tree.h"

namespace quorin {

/// Level 1: the categories of one technology. Its rows are fixed.
class FirstLevelViewController : public UITableViewController {
 public:
  [[nodiscard]] const std::optional<std::string>& seguedThroughRow() const {
    return _seguedThroughRow;
  }
  void setSeguedThroughRow(std::optional<std::string> row) { _seguedThroughRow = std::move(row); }
  [[nodiscard]] const PageTree& tableViewFields() const { return _tableViewFields; }
  [[nodiscard]] const std::shared_ptr<MetricValidator>& myMetricValidator() const {
    return _myMetricValidator;
  }

  void viewDidLoad() override;
  [[nodiscard]] std::ptrdiff_t numberOfSectionsInTableView(UITableView& tableView) override;
  /// Fatal without a technology of the tree.
  [[nodiscard]] std::ptrdiff_t numberOfRowsInSection(UITableView& tableView,
                                                     std::ptrdiff_t section) override;
  [[nodiscard]] Cell cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) override;
  /// Hands the technology and the tapped category to a category page.
  void prepareForSegue(UIStoryboardSegue& segue, UIResponder* sender) override;

 private:
  [[nodiscard]] const std::vector<std::string>& categories() const;

  std::optional<std::string> _seguedThroughRow;
  PageTree _tableViewFields = buildPageTree();
  std::shared_ptr<MetricValidator> _myMetricValidator = MetricValidator::sharedInstance();
};

}  // namespace quorin
