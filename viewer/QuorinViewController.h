#pragma once

#include "platform/platform.h"

namespace quorin {

/// Level 0: the technologies. Reads no metric data and never refreshes.
class QuorinViewController : public UITableViewController {
 public:
  void initWithStyle(UITableViewStyle style) override;
  void initWithNibName(std::optional<std::string> nibName, const Bundle* bundle) override;
  void initWithCoder(const NSCoder& coder) override;

  void viewDidLoad() override;
  void didReceiveMemoryWarning() override;

  [[nodiscard]] std::ptrdiff_t numberOfSectionsInTableView(UITableView& tableView) override;
  [[nodiscard]] std::ptrdiff_t numberOfRowsInSection(UITableView& tableView,
                                                     std::ptrdiff_t section) override;
  [[nodiscard]] Cell cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) override;

  /// Hands the tapped cell's text to a category list. Fatal for a cell without a text label.
  void prepareForSegue(UIStoryboardSegue& segue, UIResponder* sender) override;
};

}  // namespace quorin
