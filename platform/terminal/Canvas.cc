#include "platform/terminal/Canvas.h"

#include <algorithm>

namespace quorin::terminal {

Canvas::Canvas(int rows, int columns, Charset charset)
    : _rows(rows),
      _columns(columns),
      _charset(charset),
      _cells(static_cast<std::size_t>(rows * columns)) {}

int Canvas::put(int row, int column, int limit, const Glyphs& glyphs, Style style) {
  if (row < 0 || row >= _rows) return column;
  const int end = std::min(column + limit, _columns);
  for (const Glyph& glyph : glyphs) {
    if (column + glyph.columns > end) break;
    _cells[index(row, column)] = {glyph, style};
    if (glyph.columns == 2) _cells[index(row, column + 1)] = {{{L'\0'}, 0}, style};
    column += glyph.columns;
  }
  return column;
}

int Canvas::put(int row, int column, int limit, std::string_view text, Style style) {
  return put(row, column, limit, glyphsOf(text, _charset), style);
}

void Canvas::restyle(int row, int column, int columns, Style style) {
  if (row < 0 || row >= _rows) return;
  const int end = std::min(column + columns, _columns);
  for (; column < end; ++column) _cells[index(row, column)].style = style;
}

std::string Canvas::text(int row) const {
  std::string text;
  for (int column = 0; column < _columns; ++column) text += textOf(at(row, column).glyph);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string Canvas::text() const {
  std::string whole;
  for (int row = 0; row < _rows; ++row) whole += text(row) + '\n';
  return whole;
}

}  // namespace quorin::terminal
