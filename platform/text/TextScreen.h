#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/toolkit/UIApplication.h"

namespace quorin {

/// How the printed pages look.
struct TextStyle {
  std::string headline;  // before a headline
  std::string quiet;     // before what is less important
  std::string end;       // after either
};

/// Prints pages as text on standard output. Main thread.
class TextScreen {
 public:
  explicit TextScreen(TextStyle style) : _style(std::move(style)) {}

  /// Opens every page that is two rows away from the first one, as an engineer would by tapping,
  /// and goes back; `keys` chooses pages by the tapped texts joined by a blank, none chooses all.
  /// Gives the keys that no page has.
  [[nodiscard]] std::vector<std::string> openPages(UIApplication& application,
                                                   std::set<std::string> keys);

  /// Prints every opened page.
  void printAll();

 private:
  struct OpenPage {
    std::string key;
    std::shared_ptr<UITableViewController> page;
    std::vector<SectionContents> shown;
  };

  void watch(std::string key, const Page& page);
  void print(const OpenPage& open) const;

  TextStyle _style;
  std::vector<std::unique_ptr<OpenPage>> _pages;
};

}  // namespace quorin
