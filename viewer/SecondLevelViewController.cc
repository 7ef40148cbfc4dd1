#include "viewer/SecondLevelViewController.h"

#include "viewer/annotations.h"

namespace quorin {

namespace {

constexpr Milliseconds kReloadInterval{5000};

/// A page whose row count says so when its dictionary comes from behind the platform's bridge.
constexpr std::string_view kBridgedKey = "LTE Serving Cell Info";

bool hasSections(const PageRow* page) {
  return page && std::holds_alternative<SectionPerEntryOf>(page->shown);
}

}  // namespace

void SecondLevelViewController::viewDidLoad() {
  UITableViewController::viewDidLoad();
  const auto self = std::static_pointer_cast<SecondLevelViewController>(shared_from_this());
  scheduleTimer(kReloadInterval, [self] { self->update(); });
}

void SecondLevelViewController::update() {
  const auto self = std::static_pointer_cast<SecondLevelViewController>(shared_from_this());
  dispatch_async(dispatch_get_main_queue(), [self] { self->tableView().reloadData(); });
}

std::string SecondLevelViewController::pageKey() const {
  if (!_firstSelection || !_seguedThroughRow) fatal();
  return *_firstSelection + " " + *_seguedThroughRow;
}

SecondLevelViewController::Answer SecondLevelViewController::answer(Question question) const {
  const PageRow* page = pageRow(pageKey(), question);
  if (!page) return {};
  return {page, sectionsOf(*page, *_myMetricValidator)};
}

const SecondLevelViewController::Snapshot& SecondLevelViewController::takeSnapshot() {
  return _snapshot.emplace(Snapshot{answer(Question::counts), answer(Question::cells)});
}

std::ptrdiff_t SecondLevelViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  const Answer& counts = takeSnapshot().counts;
  return hasSections(counts.page) ? std::ssize(counts.sections) : 1;
}

std::optional<std::string> SecondLevelViewController::titleForHeaderInSection(
    UITableView& /*tableView*/, std::ptrdiff_t section) {
  const PageRow* page = snapshot().counts.page;
  if (!hasSections(page)) return std::nullopt;
  return std::string(page->header) + std::to_string(section);
}

std::ptrdiff_t SecondLevelViewController::numberOfRowsInSection(UITableView& /*tableView*/,
                                                                std::ptrdiff_t section) {
  const Answer& counts = snapshot().counts;
  if (!counts.page) return 1;
  const Dictionary& rows = elementAt(counts.sections, section);
  if (counts.page->key == kBridgedKey && rows.isBridged()) printLine("You are screwed");
  return std::ssize(rows);
}

std::optional<SecondLevelViewController::ShownRow> SecondLevelViewController::shownRow(
    NSIndexPath indexPath) {
  const Answer& cells = snapshot().cells;
  if (!cells.page) return std::nullopt;
  const Dictionary& rows = elementAt(cells.sections, indexPath.section);
  const auto [key, value] = elementAt(rows, indexPath.row);
  return ShownRow{printed(Value(key)), printed(value)};
}

Cell SecondLevelViewController::cellForRowAtIndexPath(UITableView& tableView,
                                                      NSIndexPath indexPath) {
  _currentCell = tableView.dequeueReusableCellWithIdentifier("SecondClickView", indexPath);
  ShownRow shown = shownRow(indexPath).value_or(ShownRow{"Come back later", ""});
  if (UILabel* label = _currentCell->textLabel()) label->setText(std::move(shown.text));
  if (UILabel* label = _currentCell->detailTextLabel()) label->setText(std::move(shown.detail));
  return _currentCell;
}

double SecondLevelViewController::heightForRowAtIndexPath(UITableView& /*tableView*/,
                                                          NSIndexPath /*indexPath*/) {
  return UITableView::kAutomaticDimension;
}

double SecondLevelViewController::estimatedHeightForRowAtIndexPath(UITableView& /*tableView*/,
                                                                   NSIndexPath /*indexPath*/) {
  return UITableView::kAutomaticDimension;
}

std::optional<LastReport> SecondLevelViewController::lastReport() const {
  const PageRow* page = pageRow(pageKey(), Question::cells);
  if (!page) return std::nullopt;
  return LastReport{_myMetricValidator->arrival(sourceOf(*page))};
}

Annotation SecondLevelViewController::annotationForRowAtIndexPath(UITableView& /*tableView*/,
                                                                  NSIndexPath indexPath) {
  const std::optional<ShownRow> shown = shownRow(indexPath);
  return shown ? annotationFor(pageKey(), shown->text, shown->detail) : Annotation{};
}

}  // namespace quorin
