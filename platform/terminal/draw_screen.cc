#include <algorithm>

#include "platform/terminal/TerminalScreen.h"

namespace quorin::terminal {

namespace {

constexpr std::size_t kSideBySide = 3;
constexpr int kNarrowestList = 16;
constexpr std::string_view kHint = "? keys";
constexpr std::string_view kLongHint = "Enter open  q back  / find  l log  ? keys";
constexpr std::string_view kFirstHint = "Enter open  q quit  / find  l log  ? keys";

/// Meaning and clause in one line, or one below the other where that is too long. Empty: neither.
std::vector<Glyphs> noteOf(const Annotation& annotation, int columns, Charset charset) {
  const Glyphs meaning = glyphsOf(annotation.meaning, charset);
  const Glyphs clause = glyphsOf(annotation.clause, charset);
  const Glyphs gap = glyphsOf(meaning.empty() || clause.empty() ? "" : "   ", charset);
  if (meaning.empty() && clause.empty()) return {};
  std::vector<Glyphs> lines = wrapped(meaning, columns);
  if (columnsOf(meaning) + columnsOf(gap) + columnsOf(clause) <= columns) {
    lines[0].insert(lines[0].end(), gap.begin(), gap.end());
    lines[0].insert(lines[0].end(), clause.begin(), clause.end());
  } else if (!clause.empty()) {
    for (Glyphs& line : wrapped(clause, columns)) lines.push_back(std::move(line));
  }
  return lines;
}

/// A page of texts alone, which needs no more room than its longest.
std::optional<int> listColumns(const ScreenPage& page, Charset charset) {
  int columns = 0;
  for (const ScreenLine& line : page.lines()) {
    if (line.isHeader() || !line.detail.empty()) return std::nullopt;
    columns = std::max(columns, columnsOf(glyphsOf(line.text, charset)));
  }
  if (page.lines().empty()) return std::nullopt;
  return std::max(columns + 3, kNarrowestList);
}

std::string position(const PageView& view) {
  const auto& lines = view.page().lines();
  const auto rows = std::ranges::count_if(lines, [](const auto& line) { return !line.isHeader(); });
  if (rows == 0) return "";
  const auto until = lines.begin() + static_cast<std::ptrdiff_t>(view.selection()) + 1;
  const auto at =
      std::count_if(lines.begin(), until, [](const auto& line) { return !line.isHeader(); });
  return std::to_string(at) + "/" + std::to_string(rows);
}

void drawSeparator(Canvas& canvas, const Area& area, int column) {
  for (int row = 0; row < area.rows; ++row)
    canvas.put(area.row + row, column, 1, "│", Style::quiet);
}

}  // namespace

void TerminalScreen::draw(Canvas& canvas) {
  if (canvas.rows() < kFewestRows || canvas.columns() < kFewestColumns) {
    canvas.put(0, 0, canvas.columns(),
               "quorin needs " + std::to_string(kFewestColumns) + " × " +
                   std::to_string(kFewestRows) + ", this is " + std::to_string(canvas.columns()) +
                   " × " + std::to_string(canvas.rows()),
               Style::plain);
    return;
  }
  _wide = canvas.columns() >= kWideColumns;
  Area body{1, 0, canvas.rows() - 2, canvas.columns()};
  if (_help) return drawHelp(canvas, body);
  drawBar(canvas, _wide ? _views.size() - 1 : _focus);
  if (const int notes = std::min(noteRows(canvas.columns(), canvas.charset()), canvas.rows() / 3);
      notes > 0) {
    body.rows -= notes;
    drawNotes(canvas, {body.row + body.rows, 0, notes, body.columns});
  }
  if (_log) {
    const int rows = std::max(canvas.rows() / 3, 3);
    body.rows -= rows;
    drawLog(canvas, {body.row + body.rows, 0, rows, body.columns});
  }
  drawPages(canvas, body);
  drawFooter(canvas);
  refreshAge();
}

void TerminalScreen::drawPages(Canvas& canvas, const Area& area) {
  for (const auto& view : _views) view->hide();
  if (!_wide) return view().draw(canvas, area, true);
  const std::size_t deepest = _views.size() - 1;
  std::size_t level = std::min(_focus, deepest + 1 - std::min(deepest + 1, kSideBySide));
  const std::size_t last = std::min(level + kSideBySide - 1, deepest);
  int column = area.column;
  for (; level <= last; ++level) {
    const int left = area.column + area.columns - column;
    const auto list = listColumns(*_stack.pages()[level], canvas.charset());
    const int columns = list ? std::min(*list, left / 2) : left;
    _views[level]->draw(canvas, {area.row, column, area.rows, columns}, level == _focus);
    column += columns;
    if (column >= area.column + area.columns) break;
    drawSeparator(canvas, area, column++);
  }
}

void TerminalScreen::drawBar(Canvas& canvas, std::size_t deepest) const {
  const Charset charset = canvas.charset();
  canvas.restyle(0, 0, canvas.columns(), Style::bar);
  std::string path;
  for (std::size_t level = 0; level < deepest; ++level)
    path += _stack.pages()[level]->title() + " › ";
  const Glyphs title = glyphsOf(_stack.pages()[deepest]->title(), charset);
  const int room = std::max(canvas.columns() - 2 - columnsOf(title), 0);
  const int at =
      canvas.put(0, 1, room, shortenedAtStart(glyphsOf(path, charset), room, charset), Style::bar);
  canvas.put(0, at, canvas.columns() - at, shortened(title, canvas.columns() - at, charset),
             Style::barTitle);
}

int TerminalScreen::noteRows(int columns, Charset charset) const {
  std::size_t rows = 0;
  for (const ScreenLine& line : view().page().lines())
    rows = std::max(rows, noteOf(line.annotation, columns - 2, charset).size());
  return static_cast<int>(rows);
}

void TerminalScreen::drawNotes(Canvas& canvas, const Area& area) const {
  const auto& lines = view().page().lines();
  if (view().selection() >= lines.size()) return;
  int row = area.row;
  for (const Glyphs& line :
       noteOf(lines[view().selection()].annotation, area.columns - 2, canvas.charset()))
    if (row < area.row + area.rows) canvas.put(row++, 1, area.columns - 2, line, Style::plain);
}

void TerminalScreen::drawLog(Canvas& canvas, const Area& area) {
  _logArea = area;
  for (int column = 0; column < area.columns; ++column)
    canvas.put(area.row, column, 1, "─", Style::quiet);
  const std::size_t count = _strip.count();
  const std::size_t end = _logEnd.value_or(count);
  const std::string title =
      " log " + (_logEnd ? std::to_string(end) + "/" + std::to_string(count) + " " : std::string());
  canvas.put(area.row, 1, area.columns - 2, title, Style::quiet);
  const int room = area.rows - 1;
  std::vector<Glyphs> parts;
  for (const std::string& line : _strip.before(end, static_cast<std::size_t>(room)))
    for (Glyphs& part : wrapped(glyphsOf(line, canvas.charset()), area.columns - 2))
      parts.push_back(std::move(part));
  const auto first = parts.size() - std::min(parts.size(), static_cast<std::size_t>(room));
  for (std::size_t i = first; i < parts.size(); ++i)
    canvas.put(area.row + 1 + static_cast<int>(i - first), 1, area.columns - 2, parts[i],
               Style::plain);
  if (parts.empty()) canvas.put(area.row + 1, 1, area.columns - 2, "No lines", Style::quiet);
}

std::string TerminalScreen::age() const {
  if (_help) return "";
  return _wide ? _stack.top().age() : view().page().age();
}

void TerminalScreen::drawFooter(Canvas& canvas) const {
  const int row = canvas.rows() - 1;
  const int columns = canvas.columns();
  if (_typed) {
    const Glyphs typed = glyphsOf("/" + *_typed + "_" + (_message.empty() ? "" : "   " + _message),
                                  canvas.charset());
    canvas.put(row, 1, columns - 2, shortened(typed, columns - 2, canvas.charset()), Style::prompt);
    return;
  }
  const std::string place = position(view());
  const auto right = [&](std::string_view hint) {
    return glyphsOf(place + (place.empty() ? "" : "   ") + std::string(hint), canvas.charset());
  };
  const Glyphs left = glyphsOf(_message.empty() ? age() : _message, canvas.charset());
  Glyphs hints = right(_focus == 0 ? kFirstHint : kLongHint);
  constexpr int kAgeRoom = 24;  // so that the hints stay as the age grows
  if (std::max(columnsOf(left), kAgeRoom) + columnsOf(hints) + 4 > columns) hints = right(kHint);
  const int hintColumn = columns - 1 - columnsOf(hints);
  canvas.put(row, 1, hintColumn - 2, shortened(left, hintColumn - 2, canvas.charset()),
             Style::plain);
  canvas.put(row, hintColumn, columnsOf(hints), hints, Style::quiet);
}

void TerminalScreen::drawHelp(Canvas& canvas, const Area& area) {
  canvas.restyle(0, 0, canvas.columns(), Style::bar);
  canvas.put(0, 1, canvas.columns() - 2, "Keys", Style::barTitle);
  int widest = 0;
  for (const KeyRow& row : keyRows())
    widest = std::max(widest, columnsOf(glyphsOf(row.shown, canvas.charset())));
  const int textColumn = widest + 3;
  const int room = area.columns - textColumn - 1;
  std::vector<std::pair<std::string_view, Glyphs>> lines;
  for (const KeyRow& row : keyRows())
    for (Glyphs& part : wrapped(glyphsOf(row.help, canvas.charset()), room)) {
      const bool first = lines.empty() || lines.back().first != row.shown;
      lines.emplace_back(first ? row.shown : "", std::move(part));
    }
  _helpTop = std::clamp(_helpTop, 0, std::max(static_cast<int>(lines.size()) - area.rows, 0));
  for (int row = 0; row < area.rows; ++row) {
    const auto at = static_cast<std::size_t>(_helpTop + row);
    if (at >= lines.size()) break;
    canvas.put(area.row + row, 1, widest, lines[at].first, Style::header);
    canvas.put(area.row + row, textColumn, room, lines[at].second, Style::plain);
  }
  const bool more = _helpTop + area.rows < static_cast<int>(lines.size());
  canvas.put(canvas.rows() - 1, 1, canvas.columns() - 2,
             more ? "↓ more   any other key goes back" : "any other key goes back", Style::quiet);
}

}  // namespace quorin::terminal
