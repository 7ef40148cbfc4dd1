#include "platform/screen/ScreenPage.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/number.h"

namespace quorin {

namespace {

std::vector<ScreenLine> linesOf(UITableViewController& page) {
  std::vector<ScreenLine> lines;
  std::ptrdiff_t section = 0;
  for (SectionContents& contents : contentsOf(page)) {
    if (contents.header) lines.push_back({std::nullopt, std::move(*contents.header)});
    std::ptrdiff_t row = 0;
    for (auto& cell : contents.rows)
      lines.push_back({NSIndexPath{section, row++}, std::move(cell.text), std::move(cell.detail),
                       std::move(cell.annotation)});
    ++section;
  }
  return lines;
}

/// A line stays the same line as long as this holds, whatever its detail.
bool same(const ScreenLine& a, const ScreenLine& b) {
  return a.isHeader() == b.isHeader() && a.text == b.text;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool contains(std::string_view text, std::string_view part) {
  const auto equal = [](char a, char b) { return lower(a) == lower(b); };
  return std::search(text.begin(), text.end(), part.begin(), part.end(), equal) != text.end() ||
         part.empty();
}

bool has(const ScreenLine& line, std::string_view text) {
  return contains(line.text, text) || contains(line.detail, text);
}

}  // namespace

ScreenPage::ScreenPage(std::shared_ptr<UITableViewController> page) : _page(std::move(page)) {
  _lines = linesOf(*_page);
  extendTrends();
  _page->tableView().setOnReload([this] { reload(); });
}

ScreenPage::~ScreenPage() { _page->tableView().setOnReload(nullptr); }

void ScreenPage::reload() {
  std::vector<ScreenLine> now = linesOf(*_page);
  const std::size_t shorter = std::min(now.size(), _lines.size());
  std::size_t head = 0;
  while (head < shorter && same(_lines[head], now[head])) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && same(*(_lines.end() - 1 - static_cast<std::ptrdiff_t>(tail)),
                                       *(now.end() - 1 - static_cast<std::ptrdiff_t>(tail))))
    ++tail;
  replaceMiddle(now, head, tail);
  for (std::size_t line = 0; line < _lines.size(); ++line)
    if (line < head || line >= _lines.size() - tail) takeOver(now[line], line);
  extendTrends();
  if (_observer) _observer->didReload();
}

void ScreenPage::replaceMiddle(std::vector<ScreenLine>& now, std::size_t head, std::size_t tail) {
  const auto at = [&](std::size_t line) {
    return _lines.begin() + static_cast<std::ptrdiff_t>(line);
  };
  if (const std::size_t removed = _lines.size() - head - tail; removed > 0) {
    if (_observer) _observer->willRemove(head, removed);
    _lines.erase(at(head), at(head + removed));
    if (_observer) _observer->didRemove(head, removed);
  }
  if (const std::size_t inserted = now.size() - head - tail; inserted > 0) {
    if (_observer) _observer->willInsert(head, inserted);
    const auto first = now.begin() + static_cast<std::ptrdiff_t>(head);
    _lines.insert(at(head), std::make_move_iterator(first),
                  std::make_move_iterator(first + static_cast<std::ptrdiff_t>(inserted)));
    if (_observer) _observer->didInsert(head, inserted);
  }
}

void ScreenPage::takeOver(ScreenLine& now, std::size_t line) {
  ScreenLine& shown = _lines[line];
  shown.row = now.row;
  if (shown.detail == now.detail && shown.annotation == now.annotation) return;
  shown.detail = std::move(now.detail);
  shown.annotation = std::move(now.annotation);
  ++shown.changes;
  if (_observer) _observer->didChange(line);
}

// A point for each report and not for each reload: a page that no longer hears anything must not
// draw a level line.
void ScreenPage::extendTrends() {
  const auto report = _page->lastReport();
  if (!report || !report->uptime || _sampled == report->uptime) return;
  _sampled = report->uptime;
  for (ScreenLine& line : _lines)
    if (const auto number = numberIn(line.detail)) line.trend.add({*_sampled, *number});
  if (_observer) _observer->didExtendTrends();
}

void ScreenPage::setOpenLine(std::optional<std::size_t> opened) {
  for (std::size_t line = 0; line < _lines.size(); ++line) {
    const bool open = line == opened;
    if (std::exchange(_lines[line].open, open) != open && _observer) _observer->didMark(line);
  }
}

std::string ScreenPage::age() const {
  const auto report = _page->lastReport();
  return report ? ageText(*report) : std::string();
}

std::optional<std::size_t> ScreenPage::find(std::string_view text, std::size_t from) const {
  for (std::size_t i = 0; i < _lines.size(); ++i) {
    const std::size_t line = (from + i) % _lines.size();
    if (has(_lines[line], text)) return line;
  }
  return std::nullopt;
}

std::optional<std::size_t> ScreenPage::findBefore(std::string_view text, std::size_t line) const {
  for (std::size_t i = 1; i <= _lines.size(); ++i) {
    const std::size_t before = (line + _lines.size() - i) % _lines.size();
    if (has(_lines[before], text)) return before;
  }
  return std::nullopt;
}

std::string ageText(const LastReport& report) {
  if (!report.uptime) return "never received";
  const auto age =
      std::chrono::duration_cast<std::chrono::seconds>(currentClock().uptime() - *report.uptime);
  return "last report " + std::to_string(age.count()) + " s ago";
}

std::string copyText(const ScreenLine& line) {
  return line.detail.empty() ? line.text : line.text + '\t' + line.detail;
}

std::string copyText(const ScreenPage& page) {
  std::string text = page.title() + '\n';
  for (const ScreenLine& line : page.lines()) text += copyText(line) + '\n';
  return text;
}

}  // namespace quorin
