#pragma once

#include "platform/platform.h"
#include "viewer/page_tree.h"

namespace quorin {

/// Level 3: a placeholder of one row. Nothing sets its selections, and nothing reads them: meant.
class ThirdLevelViewController : public UITableViewController {
 public:
  [[nodiscard]] const std::optional<std::string>& firstSelection() const { return _firstSelection; }
  void setFirstSelection(std::optional<std::string> technology) {
    _firstSelection = std::move(technology);
  }
  [[nodiscard]] const std::optional<std::string>& secondSelection() const {
    return _secondSelection;
  }
  void setSecondSelection(std::optional<std::string> category) {
    _secondSelection = std::move(category);
  }
  [[nodiscard]] const std::optional<std::string>& seguedThroughRow() const {
    return _seguedThroughRow;
  }
  void setSeguedThroughRow(std::optional<std::string> field) {
    _seguedThroughRow = std::move(field);
  }
  [[nodiscard]] const PageTree& tableViewFields() const { return _tableViewFields; }

  void viewDidLoad() override;
  void didReceiveMemoryWarning() override;
  [[nodiscard]] std::ptrdiff_t numberOfSectionsInTableView(UITableView& tableView) override;
  [[nodiscard]] std::ptrdiff_t numberOfRowsInSection(UITableView& tableView,
                                                     std::ptrdiff_t section) override;
  /// The cell as the interface description has it.
  [[nodiscard]] Cell cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) override;

 private:
  std::optional<std::string> _firstSelection;
  std::optional<std::string> _secondSelection;
  std::optional<std::string> _seguedThroughRow;
  PageTree _tableViewFields = buildPageTree();
};

}  // namespace quorin
