#pragma once

#include "app/interface.h"
#include "tests/support/rig.h"
#include "viewer/SecondLevelViewController.h"

namespace quorin::test {

/// The pages of the interface description on a navigation stack, without the start-up sequence.
class Walk {
 public:
  Walk() {
    _navigation.pushViewController(interfaceDescription().instantiate("QuorinViewController"));
  }

  [[nodiscard]] UINavigationController& navigation() { return _navigation; }

  /// Taps a row of the page on top and gives the page that opens.
  template <class Controller>
  std::shared_ptr<Controller> tap(std::ptrdiff_t row, std::ptrdiff_t section = 0) {
    return std::dynamic_pointer_cast<Controller>(
        selectRow(interfaceDescription(), _navigation, {section, row}));
  }

 private:
  UINavigationController _navigation;
};

/// A category page as its scene makes it, with its selections.
[[nodiscard]] inline std::shared_ptr<SecondLevelViewController> pageOf(std::string technology,
                                                                       std::string category) {
  auto page = std::make_shared<SecondLevelViewController>();
  page->initWithCoder(*interfaceDescription().scene("SecondLevelViewController"));
  page->setFirstSelection(std::move(technology));
  page->setSeguedThroughRow(std::move(category));
  return page;
}

/// Everything that a page shows, a line each: "# header" or "-" opens a section, "text=detail" is a
/// row.
[[nodiscard]] inline std::string contents(UITableViewController& page) {
  std::string text;
  for (const SectionContents& section : contentsOf(page)) {
    text += section.header ? "# " + *section.header + "\n" : "-\n";
    for (const auto& row : section.rows) text += row.text + "=" + row.detail + "\n";
  }
  return text;
}

}  // namespace quorin::test
