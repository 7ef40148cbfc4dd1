#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/screen/Trend.h"
#include "platform/toolkit/UIStoryboard.h"

namespace quorin {

/// One line of a page on a screen: a section's header, or a row.
struct ScreenLine {
  std::optional<NSIndexPath> row;  // empty: a header
  std::string text;
  std::string detail{};
  Annotation annotation{};
  Trend trend{};
  int changes = 0;    // how often its detail changed while it was shown
  bool open = false;  // the page behind this one was opened here

  [[nodiscard]] bool isHeader() const { return !row; }
};

/// Told, step by step, how a shown page's lines turn into what its controller answers now.
class ScreenPageObserver {
 public:
  virtual ~ScreenPageObserver() = default;
  virtual void willRemove(std::size_t first, std::size_t count) = 0;
  virtual void didRemove(std::size_t first, std::size_t count) = 0;
  virtual void willInsert(std::size_t first, std::size_t count) = 0;
  virtual void didInsert(std::size_t first, std::size_t count) = 0;
  /// The detail of this line is another one now.
  virtual void didChange(std::size_t line) = 0;
  /// The line is open now, or no longer.
  virtual void didMark(std::size_t line) = 0;
  /// Trends have a point more.
  virtual void didExtendTrends() {}
  /// A reload is over.
  virtual void didReload() = 0;
};

/// A page on a screen: its lines as of the latest reload, changed only where the controller's
/// answers changed. Main thread.
class ScreenPage {
 public:
  explicit ScreenPage(std::shared_ptr<UITableViewController> page);
  ~ScreenPage();
  ScreenPage(const ScreenPage&) = delete;
  ScreenPage& operator=(const ScreenPage&) = delete;

  [[nodiscard]] UITableViewController& controller() const { return *_page; }
  [[nodiscard]] const std::string& title() const { return _page->title(); }
  [[nodiscard]] const std::vector<ScreenLine>& lines() const { return _lines; }
  /// "last report 12 s ago", "never received", or empty where the page shows no metric.
  [[nodiscard]] std::string age() const;
  /// The first line at or after `from`, round the end, that has `text` in its text or detail,
  /// whatever the case of ASCII letters. Empty: none.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view text, std::size_t from) const;
  /// Likewise the last line before `line`, round the start.
  [[nodiscard]] std::optional<std::size_t> findBefore(std::string_view text,
                                                      std::size_t line) const;

  /// Marks the one line that led to the page behind this one. The mark goes with its line.
  void setOpenLine(std::optional<std::size_t> line);

  /// Hears of every reload; null: nobody does. Requires: outlives this or is taken back.
  void setObserver(ScreenPageObserver* observer) { _observer = observer; }
  /// Asks the controller anew.
  void reload();

 private:
  void replaceMiddle(std::vector<ScreenLine>& now, std::size_t head, std::size_t tail);
  void takeOver(ScreenLine& now, std::size_t line);
  void extendTrends();

  std::shared_ptr<UITableViewController> _page;
  std::vector<ScreenLine> _lines;
  std::optional<Milliseconds> _sampled;
  ScreenPageObserver* _observer = nullptr;
};

/// How long ago a page's metric came, in words.
[[nodiscard]] std::string ageText(const LastReport& report);

/// A line as it is copied: text, tabulator, detail.
[[nodiscard]] std::string copyText(const ScreenLine& line);
/// A whole page as it is copied: its title, then line by line.
[[nodiscard]] std::string copyText(const ScreenPage& page);

}  // namespace quorin
