#include "viewer/ThirdLevelViewController.h"

namespace quorin {

void ThirdLevelViewController::viewDidLoad() { UITableViewController::viewDidLoad(); }

void ThirdLevelViewController::didReceiveMemoryWarning() {
  UITableViewController::didReceiveMemoryWarning();
}

std::ptrdiff_t ThirdLevelViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  return 1;
}

std::ptrdiff_t ThirdLevelViewController::numberOfRowsInSection(UITableView& /*tableView*/,
                                                               std::ptrdiff_t /*section*/) {
  return 1;
}

Cell ThirdLevelViewController::cellForRowAtIndexPath(UITableView& tableView,
                                                     NSIndexPath indexPath) {
  return tableView.dequeueReusableCellWithIdentifier("ThirdClickView", indexPath);
}

}  // namespace quorin
