#include "viewer/FirstLevelViewController.h"

#include "viewer/SecondLevelViewController.h"

namespace quorin {

void FirstLevelViewController::viewDidLoad() { UITableViewController::viewDidLoad(); }

std::ptrdiff_t FirstLevelViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  return 1;
}

const std::vector<std::string>& FirstLevelViewController::categories() const {
  if (!_seguedThroughRow) fatal();
  const auto found = _tableViewFields.categories.find(*_seguedThroughRow);
  if (found == _tableViewFields.categories.end()) fatal();
  return found->second;
}

std::ptrdiff_t FirstLevelViewController::numberOfRowsInSection(UITableView& /*tableView*/,
                                                               std::ptrdiff_t /*section*/) {
  return std::ssize(categories());
}

Cell FirstLevelViewController::cellForRowAtIndexPath(UITableView& tableView,
                                                     NSIndexPath indexPath) {
  const std::string& category = elementAt(categories(), indexPath.row);
  Cell cell = tableView.dequeueReusableCellWithIdentifier("FirstClickView", indexPath);
  if (UILabel* label = cell->textLabel()) label->setText(category);
  return cell;
}

void FirstLevelViewController::prepareForSegue(UIStoryboardSegue& segue, UIResponder* sender) {
  auto* cell = dynamic_cast<UITableViewCell*>(sender);
  const auto destination = std::dynamic_pointer_cast<SecondLevelViewController>(segue.destination);
  if (!cell || !destination) return;
  destination->setFirstSelection(_seguedThroughRow);
  destination->setSeguedThroughRow(cell->textLabel() ? cell->textLabel()->text() : std::nullopt);
}

}  // namespace quorin
