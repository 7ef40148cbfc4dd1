#pragma once

#include "platform/screen/ScreenPage.h"
#include "platform/toolkit/UIApplication.h"

namespace quorin {

/// Told how the pages on the screen follow the navigation's stack.
class ScreenStackObserver {
 public:
  virtual ~ScreenStackObserver() = default;
  virtual void willPush() = 0;
  virtual void didPush() = 0;
  virtual void willPop() = 0;
  /// The page that was left goes after this.
  virtual void didPop() = 0;
};

/// The pages of the navigation's stack as a screen shows them. A popped page is forgotten here,
/// whatever else holds its controller. Main thread.
class ScreenStack {
 public:
  /// Requires: the application is launched, and outlives this.
  explicit ScreenStack(UIApplication& application);

  /// First page first; never empty.
  [[nodiscard]] const std::vector<std::unique_ptr<ScreenPage>>& pages() const { return _pages; }
  [[nodiscard]] ScreenPage& top() const { return *_pages.back(); }
  /// Titles of the pages after the first, joined: "LTE › RRC State".
  [[nodiscard]] std::string path() const;

  /// Hears of every push and pop; null: nobody does. Requires: outlives this or is taken back.
  void setObserver(ScreenStackObserver* observer) { _observer = observer; }

  /// Taps a line of any shown page. What stands behind that page is popped first, unless the line
  /// is the one that is open already. False when the line leads nowhere.
  bool press(std::size_t level, std::size_t line);
  /// Pops the top page, unless it is the only one.
  bool back();

 private:
  UIApplication& _application;
  std::vector<std::unique_ptr<ScreenPage>> _pages;
  ScreenStackObserver* _observer = nullptr;
};

}  // namespace quorin
