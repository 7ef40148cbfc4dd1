#include "platform/terminal/PageView.h"

#include <algorithm>
#include <utility>

#include "platform/terminal/sparkline.h"

namespace quorin::terminal {

namespace {

/// Sparklines stand one below the other, behind the longest number with its unit.
constexpr int kSparklineOffset = 18;

}  // namespace

PageView::PageView(ScreenPage& page, std::function<void()> changed)
    : _page(page), _changed(std::move(changed)) {
  _page.setObserver(this);
  moveToEnd(false);
}

PageView::~PageView() { _page.setObserver(nullptr); }

void PageView::select(std::size_t line) {
  _selection = line;
  _follow = true;
}

void PageView::move(std::ptrdiff_t rows) {
  const auto& lines = _page.lines();
  _follow = true;
  for (std::size_t at = _selection; rows != 0;) {
    if (rows < 0 ? at == 0 : at + 1 >= lines.size()) return;
    at = rows < 0 ? at - 1 : at + 1;
    if (lines[at].isHeader()) continue;
    _selection = at;
    rows += rows < 0 ? 1 : -1;
  }
}

void PageView::moveByScreens(int screens) { move(screens * std::max(_height - 2, 1)); }

void PageView::moveToEnd(bool last) {
  const auto& lines = _page.lines();
  const auto isRow = [](const ScreenLine& line) { return !line.isHeader(); };
  _follow = true;
  if (last) {
    const auto found = std::find_if(lines.rbegin(), lines.rend(), isRow);
    if (found != lines.rend()) _selection = static_cast<std::size_t>(lines.rend() - found) - 1;
  } else {
    const auto found = std::ranges::find_if(lines, isRow);
    if (found != lines.end()) _selection = static_cast<std::size_t>(found - lines.begin());
  }
}

std::optional<std::size_t> PageView::headerOf(std::size_t line) const {
  const auto& lines = _page.lines();
  for (std::size_t at = line + 1; at-- > 0;)
    if (lines[at].isHeader()) return at;
  return std::nullopt;
}

void PageView::willRemove(std::size_t /*first*/, std::size_t /*count*/) {}

void PageView::didRemove(std::size_t first, std::size_t count) {
  if (_selection >= first + count) {
    _selection -= count;
  } else if (_selection >= first) {
    _lost = _selection - first;
    _selection = first;
  }
}

void PageView::willInsert(std::size_t /*first*/, std::size_t /*count*/) {}

void PageView::didInsert(std::size_t first, std::size_t count) {
  if (count == _page.lines().size())
    moveToEnd(false);
  else if (_lost)
    _selection = first + std::min(*_lost, count - 1);
  else if (_selection >= first)
    _selection += count;
}

void PageView::didChange(std::size_t line) { _changing.insert(line); }

void PageView::didMark(std::size_t /*line*/) { _changed(); }

void PageView::didReload() {
  const auto& lines = _page.lines();
  _marked = std::exchange(_changing, {});
  _lost = std::nullopt;
  if (_selection >= lines.size() || lines[_selection].isHeader()) {
    _selection = std::min(_selection, lines.empty() ? 0 : lines.size() - 1);
    const std::size_t before = _selection;
    move(1);
    if (_selection == before) move(-1);
  }
  _changed();
}

void PageView::scroll(int rows) {
  _top += rows;
  _follow = false;
}

// The first row in sight is its section's header, which covers what would stand there.
void PageView::bringSelectionIntoSight(const PageViewLayout& layout) {
  const auto& rows = layout.rows;
  const auto of = [&](std::size_t line) {
    return static_cast<int>(std::ranges::find(rows, line, &PageViewRow::line) - rows.begin());
  };
  const int first = of(_selection);
  const int behind = of(_selection + 1);  // beyond the last line: all rows
  const auto header = headerOf(_selection);
  const bool covered = header && *header != _selection;
  // The first row of a section comes with its header and not below a covering one.
  const int highest = covered ? first - 1 : first;
  _top = std::max(_top, behind - _area.rows);
  _top = std::min(_top, highest);
}

// A covering header with the next one right below it would look like a section without rows.
void PageView::passOverLoneHeader(const PageViewLayout& layout) {
  const auto next = static_cast<std::size_t>(_top) + 1;
  if (next >= layout.rows.size()) return;
  const auto& lines = _page.lines();
  const std::size_t covered = layout.rows[next - 1].line;
  if (headerOf(covered) && !lines[covered].isHeader() && lines[layout.rows[next].line].isHeader())
    ++_top;
}

void PageView::draw(Canvas& canvas, const Area& area, bool focused) {
  _follow |= area.rows != _height;
  _area = area;
  _height = area.rows;
  _shown.assign(static_cast<std::size_t>(std::max(area.rows, 0)), std::nullopt);
  if (area.rows <= 0) return;
  const auto& lines = _page.lines();
  if (lines.empty()) {
    canvas.put(area.row, area.column + 1, area.columns - 2, "No entries", Style::quiet);
    return;
  }
  const PageViewLayout layout = layOut(lines, area.columns, canvas.charset());
  if (_follow) bringSelectionIntoSight(layout);
  _follow = false;
  _top = std::clamp(_top, 0, std::max(static_cast<int>(layout.rows.size()) - area.rows, 0));
  passOverLoneHeader(layout);
  for (int row = 0; row < area.rows; ++row) {
    const auto at = static_cast<std::size_t>(_top + row);
    if (at >= layout.rows.size()) break;
    const PageViewRow* shown = &layout.rows[at];
    if (row == 0)
      if (const auto header = headerOf(shown->line))
        shown = &*std::ranges::find(layout.rows, *header, &PageViewRow::line);
    _shown[static_cast<std::size_t>(row)] = shown->line;
    drawRow(canvas, area.row + row, layout, *shown, focused);
  }
  drawHints(canvas, layout.rows.size());
}

void PageView::drawRow(Canvas& canvas, int row, const PageViewLayout& layout,
                       const PageViewRow& shown, bool focused) const {
  const ScreenLine& line = _page.lines()[shown.line];
  const bool selected = shown.line == _selection;
  const bool bar = selected && focused;
  const Style style = bar               ? Style::selected
                      : line.open       ? Style::open
                      : line.isHeader() ? Style::header
                                        : Style::plain;
  const int left = _area.column;
  const int right = left + _area.columns;
  if (bar || line.open) canvas.restyle(row, left, _area.columns, style);
  if (line.open && shown.first) canvas.put(row, left, 1, "›", style);
  const int textColumn = left + (line.isHeader() ? 1 : layout.textColumn);
  canvas.put(row, textColumn, right - textColumn, shown.text, style);
  const int valueColumn = left + layout.valueColumn;
  if (shown.valued && _marked.contains(shown.line))
    canvas.put(row, valueColumn - 2, 1, "•", bar ? style : Style::changed);
  int end = canvas.put(row, valueColumn, right - valueColumn, shown.value, style);
  if (!shown.unit.empty()) end = canvas.put(row, end + 1, right - end - 1, shown.unit, style);
  const int spark = valueColumn + kSparklineOffset;
  if (shown.valued && end < spark && spark + kSparklineColumns < right)
    canvas.put(row, spark, kSparklineColumns, sparkline(line.trend, canvas.charset()), style);
}

void PageView::drawHints(Canvas& canvas, std::size_t rows) const {
  const int column = _area.column + _area.columns - 1;
  const auto hint = [&](int row, std::string_view sign) {
    canvas.put(row, column, 1, sign, canvas.at(row, column).style);
  };
  if (_top > 0) hint(_area.row, "↑");
  if (_top + _area.rows < static_cast<int>(rows)) hint(_area.row + _area.rows - 1, "↓");
}

bool PageView::isAt(int row, int column) const {
  return row >= _area.row && row < _area.row + _area.rows && column >= _area.column &&
         column < _area.column + _area.columns;
}

std::optional<std::size_t> PageView::lineAt(int row, int column) const {
  if (!isAt(row, column)) return std::nullopt;
  return _shown[static_cast<std::size_t>(row - _area.row)];
}

}  // namespace quorin::terminal
