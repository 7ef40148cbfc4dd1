#include <algorithm>

#include "platform/terminal/PageView.h"

namespace quorin::terminal {

namespace {

constexpr int kSmallestValue = 12;
constexpr int kMarkColumns = 3;  // blank, mark, blank between text and value

int widestText(const std::vector<ScreenLine>& lines, int limit, Charset charset) {
  int widest = 0;
  for (const ScreenLine& line : lines) {
    if (line.isHeader()) continue;
    const int columns = columnsOf(glyphsOf(line.text, charset));
    if (columns <= limit) widest = std::max(widest, columns);
  }
  return widest;
}

void addText(std::vector<PageViewRow>& rows, std::size_t line, const Glyphs& text, int columns) {
  for (Glyphs& part : wrapped(text, columns))
    rows.push_back(
        {line, rows.empty() || rows.back().line != line, false, std::move(part), {}, {}});
}

/// The value's rows, the first of them beside the text's last where that leaves room.
void addValue(std::vector<PageViewRow>& rows, std::size_t line, const Glyphs& value,
              const Glyphs& unit, bool beside, int columns) {
  std::vector<Glyphs> parts = wrapped(value, columns);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0 || !beside) rows.push_back({line, false, false, {}, {}, {}});
    rows.back().valued = i == 0;
    rows.back().value = std::move(parts[i]);
  }
  if (unit.empty()) return;
  if (columnsOf(rows.back().value) + 1 + columnsOf(unit) > columns)
    rows.push_back({line, false, false, {}, {}, {}});
  rows.back().unit = unit;
}

}  // namespace

PageViewLayout layOut(const std::vector<ScreenLine>& lines, int columns, Charset charset) {
  PageViewLayout layout;
  const bool sections = std::ranges::any_of(lines, &ScreenLine::isHeader);
  layout.textColumn = sections ? 3 : 1;
  const int room = columns - layout.textColumn - 1;
  const int textRoom = std::max(room - kMarkColumns - kSmallestValue, room / 3);
  layout.valueColumn = layout.textColumn + widestText(lines, textRoom, charset) + kMarkColumns;
  const int valueRoom = std::max(columns - layout.valueColumn - 1, 1);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const ScreenLine& line = lines[i];
    const Glyphs text = glyphsOf(line.text, charset);
    addText(layout.rows, i, text, std::max(line.isHeader() ? columns - 2 : room, 1));
    if (line.detail.empty()) continue;
    const bool beside = columnsOf(text) + layout.textColumn + kMarkColumns <= layout.valueColumn;
    addValue(layout.rows, i, glyphsOf(line.detail, charset),
             glyphsOf(line.annotation.unit, charset), beside, valueRoom);
  }
  return layout;
}

}  // namespace quorin::terminal
