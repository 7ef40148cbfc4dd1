#include "platform/toolkit/UIViewController.h"

#include "platform/toolkit/UIStoryboard.h"

namespace quorin {

void UIViewController::initWithNibName(std::optional<std::string> nibName, const Bundle* bundle) {
  _nibName = std::move(nibName);
  _nibBundle = bundle;
}

void UIViewController::initWithCoder(const NSCoder& coder) {
  _scene = &coder;
  _title = coder.title;
}

void UIViewController::prepareForSegue(UIStoryboardSegue& /*segue*/, UIResponder* /*sender*/) {}

void UIViewController::loadViewIfNeeded() {
  if (_loaded) return;
  _loaded = true;
  viewDidLoad();
}

void UITableViewController::initWithCoder(const NSCoder& coder) {
  UIViewController::initWithCoder(coder);
  _tableView.registerPrototype(coder.cell);
}

std::ptrdiff_t UITableViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  return 1;
}

std::optional<std::string> UITableViewController::titleForHeaderInSection(
    UITableView& /*tableView*/, std::ptrdiff_t /*section*/) {
  return std::nullopt;
}

double UITableViewController::heightForRowAtIndexPath(UITableView& /*tableView*/,
                                                      NSIndexPath /*indexPath*/) {
  return UITableView::kAutomaticDimension;
}

double UITableViewController::estimatedHeightForRowAtIndexPath(UITableView& /*tableView*/,
                                                               NSIndexPath /*indexPath*/) {
  return UITableView::kAutomaticDimension;
}

Annotation UITableViewController::annotationForRowAtIndexPath(UITableView& /*tableView*/,
                                                              NSIndexPath /*indexPath*/) {
  return {};
}

void UINavigationController::initWithNavigationBarClass(
    std::optional<std::string> navigationBarClass, std::optional<std::string> toolbarClass) {
  _navigationBarClass = std::move(navigationBarClass);
  _toolbarClass = std::move(toolbarClass);
}

void UINavigationController::initWithRootViewController(Page root) {
  pushViewController(std::move(root));
}

void UINavigationController::pushViewController(Page page) {
  _pages.push_back(page);
  page->loadViewIfNeeded();
}

Page UINavigationController::popViewController() {
  if (_pages.size() < 2) return nullptr;
  Page page = _pages.back();
  _pages.pop_back();
  return page;
}

}  // namespace quorin
