#include "viewer/QuorinViewController.h"

#include "viewer/FirstLevelViewController.h"
#include "viewer/page_tree.h"

namespace quorin {

namespace {

const PageTree& pageTree() {
  static dispatch_once_t once;
  static PageTree tree;
  dispatch_once(once, [] { tree = buildPageTree(); });
  return tree;
}

}  // namespace

void QuorinViewController::initWithStyle(UITableViewStyle style) {
  UITableViewController::initWithStyle(style);
}

void QuorinViewController::initWithNibName(std::optional<std::string> nibName,
                                           const Bundle* bundle) {
  UITableViewController::initWithNibName(std::move(nibName), bundle);
}

void QuorinViewController::initWithCoder(const NSCoder& coder) {
  UITableViewController::initWithCoder(coder);
}

void QuorinViewController::viewDidLoad() { UITableViewController::viewDidLoad(); }

void QuorinViewController::didReceiveMemoryWarning() {
  UITableViewController::didReceiveMemoryWarning();
}

std::ptrdiff_t QuorinViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  return 1;
}

std::ptrdiff_t QuorinViewController::numberOfRowsInSection(UITableView& /*tableView*/,
                                                           std::ptrdiff_t /*section*/) {
  return std::ssize(pageTree().technologies);
}

Cell QuorinViewController::cellForRowAtIndexPath(UITableView& tableView, NSIndexPath indexPath) {
  const std::string& technology = elementAt(pageTree().technologies, indexPath.row);
  Cell cell = tableView.dequeueReusableCellWithIdentifier("LaunchView", indexPath);
  if (UILabel* label = cell->textLabel()) label->setText(technology);
  return cell;
}

void QuorinViewController::prepareForSegue(UIStoryboardSegue& segue, UIResponder* sender) {
  auto* cell = dynamic_cast<UITableViewCell*>(sender);
  if (!cell) return;
  const auto destination = std::dynamic_pointer_cast<FirstLevelViewController>(segue.destination);
  if (!destination) return;
  if (!cell->textLabel()) fatal();
  destination->setSeguedThroughRow(cell->textLabel()->text());
}

}  // namespace quorin
