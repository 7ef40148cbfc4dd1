#pragma once

#include <span>

#include "platform/toolkit/UIViewController.h"

namespace quorin {

class UIApplicationDelegate;

/// One page of the interface description.
struct UIScene {
  std::string_view className;
  Page (*make)();
  CellPrototype cell{};
  std::string_view title{};    // fixed; empty: the text that was tapped
  std::string_view segueTo{};  // the class that a tapped row leads to; empty: nowhere
};

/// An application delegate's class.
struct UIDelegateClass {
  std::string_view className;
  std::shared_ptr<UIApplicationDelegate> (*make)();
};

/// The application's interface description. Requires: outlives the application.
struct UIStoryboard {
  std::span<const UIDelegateClass> delegates;
  std::string_view rootClassName;   // the navigation root
  std::string_view firstClassName;  // its first page
  std::span<const UIScene> scenes;

  /// The scene of this class, or null.
  [[nodiscard]] const UIScene* scene(std::string_view className) const;
  /// A page made from the scene of this class. Fatal when there is none.
  [[nodiscard]] Page instantiate(std::string_view className) const;
};

/// What tapping a row does: makes the page that the row's scene leads to, lets the page on top
/// prepare the segue, and pushes. Gives the page, or null when the row leads nowhere.
/// Requires: the top page is a table and has this row.
Page selectRow(const UIStoryboard& storyboard, UINavigationController& navigation,
               NSIndexPath indexPath);

/// One section as a page answered for it.
struct SectionContents {
  struct Row {
    std::string text;
    std::string detail;
    Annotation annotation{};
    friend bool operator==(const Row&, const Row&) = default;
  };
  std::optional<std::string> header;
  std::vector<Row> rows;
  friend bool operator==(const SectionContents&, const SectionContents&) = default;
};

/// Asks a page for everything that it shows, in a reload's order: section count, then section by
/// section its header, its rows, and of each its cell and its annotation.
[[nodiscard]] std::vector<SectionContents> contentsOf(UITableViewController& page);

}  // namespace quorin
