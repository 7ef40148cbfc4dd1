#pragma once

#include "platform/terminal/glyphs.h"

namespace quorin::terminal {

/// How a cell looks; the display turns it into what the terminal has.
enum class Style {
  plain,
  bar,       // the title's bar
  barTitle,  // the page's own title in it
  header,    // a section's header
  quiet,     // what is less important than the rows
  changed,   // the mark of a changed value
  selected,  // the selection of the page in focus
  open,      // a row whose page is shown beside it
  prompt,    // what is being typed
};

struct Cell {
  Glyph glyph;
  Style style = Style::plain;
  friend bool operator==(const Cell&, const Cell&) = default;
};

/// Where on a canvas.
struct Area {
  int row = 0;
  int column = 0;
  int rows = 0;
  int columns = 0;
};

/// A screen as cells, before any terminal sees it.
class Canvas {
 public:
  Canvas(int rows, int columns, Charset charset);

  [[nodiscard]] int rows() const { return _rows; }
  [[nodiscard]] int columns() const { return _columns; }
  [[nodiscard]] Charset charset() const { return _charset; }
  [[nodiscard]] const Cell& at(int row, int column) const { return _cells[index(row, column)]; }
  [[nodiscard]] Area whole() const { return {0, 0, _rows, _columns}; }

  /// Puts glyphs in a row, at most `limit` columns of them. Gives the column behind them.
  int put(int row, int column, int limit, const Glyphs& glyphs, Style style);
  int put(int row, int column, int limit, std::string_view text, Style style);
  /// Gives the cells of a row another look.
  void restyle(int row, int column, int columns, Style style);

  /// The row as text, without blanks at its end.
  [[nodiscard]] std::string text(int row) const;
  /// All rows as lines.
  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] std::size_t index(int row, int column) const {
    return static_cast<std::size_t>(row * _columns + column);
  }
  int _rows;
  int _columns;
  Charset _charset;
  std::vector<Cell> _cells;
};

}  // namespace quorin::terminal
