#pragma once

#include <functional>
#include <set>

#include "platform/screen/ScreenPage.h"
#include "platform/terminal/Canvas.h"

namespace quorin::terminal {

/// One row on the screen: a header, a row, or what is left of a row that needs several.
struct PageViewRow {
  std::size_t line = 0;
  bool first = true;    // the line begins here
  bool valued = false;  // the value begins here
  Glyphs text;
  Glyphs value;
  Glyphs unit;
};

/// A page's rows at a width, and where they stand.
struct PageViewLayout {
  std::vector<PageViewRow> rows;
  int textColumn = 1;
  int valueColumn = 0;
};

/// Lays lines out so that nothing is cut off: a value that is too long goes on below itself, and a
/// text that is too long stands above its value.
[[nodiscard]] PageViewLayout layOut(const std::vector<ScreenLine>& lines, int columns,
                                    Charset charset);

/// A page as part of a screen: its selection, what of it is in sight, and which values are new.
/// Main thread.
class PageView final : public ScreenPageObserver {
 public:
  /// Hears of the page's reloads and calls `changed` after each. Requires: the page outlives this.
  PageView(ScreenPage& page, std::function<void()> changed);
  ~PageView() override;
  PageView(const PageView&) = delete;
  PageView& operator=(const PageView&) = delete;

  [[nodiscard]] const ScreenPage& page() const { return _page; }
  /// The selected line; 0 in an empty page.
  [[nodiscard]] std::size_t selection() const { return _selection; }
  void select(std::size_t line);
  /// Moves the selection over so many rows, headers not counted, and not beyond the ends.
  void move(std::ptrdiff_t rows);
  /// Moves by as many rows as are in sight, `screens` times.
  void moveByScreens(int screens);
  void moveToEnd(bool last);
  /// Moves what is in sight; the selection goes with it only as far as it must.
  void scroll(int rows);

  /// Draws the page into the area, the selection in sight.
  void draw(Canvas& canvas, const Area& area, bool focused);
  /// The line that the last `draw` put there, or empty.
  [[nodiscard]] std::optional<std::size_t> lineAt(int row, int column) const;
  /// Whether the last `draw` put the page there.
  [[nodiscard]] bool isAt(int row, int column) const;
  /// The page is out of sight until the next `draw`.
  void hide() { _area = {}; }

  void willRemove(std::size_t first, std::size_t count) override;
  void didRemove(std::size_t first, std::size_t count) override;
  void willInsert(std::size_t first, std::size_t count) override;
  void didInsert(std::size_t first, std::size_t count) override;
  void didChange(std::size_t line) override;
  void didMark(std::size_t line) override;
  void didReload() override;

 private:
  [[nodiscard]] std::optional<std::size_t> headerOf(std::size_t line) const;
  void bringSelectionIntoSight(const PageViewLayout& layout);
  void passOverLoneHeader(const PageViewLayout& layout);
  void drawRow(Canvas& canvas, int row, const PageViewLayout& layout, const PageViewRow& shown,
               bool focused) const;
  void drawHints(Canvas& canvas, std::size_t rows) const;

  ScreenPage& _page;
  std::function<void()> _changed;
  std::size_t _selection = 0;
  std::optional<std::size_t> _lost;  // how far into removed lines the selection stood
  int _top = 0;                      // first row of the layout in sight
  bool _follow = true;               // the next drawing brings the selection into sight
  Area _area;                        // where the page is in sight
  int _height = 0;                   // how many rows it had when it was last in sight
  std::vector<std::optional<std::size_t>> _shown;  // line of each row of the area
  std::set<std::size_t> _changing;                 // lines changed by the reload under way
  std::set<std::size_t> _marked;                   // lines changed by the latest reload
};

}  // namespace quorin::terminal
