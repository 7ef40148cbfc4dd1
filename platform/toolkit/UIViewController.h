#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/foundation/clock.h"
#include "platform/toolkit/UITableView.h"

namespace quorin {

class UINavigationController;
struct UIScene;

/// The scene of the interface description that a controller is made from.
using NSCoder = UIScene;

/// One page. Pages live on the main thread.
class UIViewController : public UIResponder, public std::enable_shared_from_this<UIViewController> {
 public:
  virtual void initWithNibName(std::optional<std::string> nibName, const Bundle* bundle);
  virtual void initWithCoder(const NSCoder& coder);

  virtual void viewDidLoad() {}
  virtual void didReceiveMemoryWarning() {}
  /// Called on the page that a segue leaves, before the destination's view loads.
  virtual void prepareForSegue(struct UIStoryboardSegue& segue, UIResponder* sender);

  /// Runs `viewDidLoad` the first time.
  void loadViewIfNeeded();

  [[nodiscard]] const std::string& title() const { return _title; }
  void setTitle(std::string title) { _title = std::move(title); }
  /// The scene this page was made from, or null.
  [[nodiscard]] const NSCoder* scene() const { return _scene; }
  [[nodiscard]] const std::optional<std::string>& nibName() const { return _nibName; }
  [[nodiscard]] const Bundle* nibBundle() const { return _nibBundle; }
  [[nodiscard]] bool isViewLoaded() const { return _loaded; }

 private:
  std::string _title;
  const NSCoder* _scene = nullptr;
  std::optional<std::string> _nibName;
  const Bundle* _nibBundle = nullptr;
  bool _loaded = false;
};

using Page = std::shared_ptr<UIViewController>;

/// The way from one page to the next.
struct UIStoryboardSegue {
  std::string identifier;
  Page source;
  Page destination;
};

enum class UITableViewStyle { plain, grouped };

/// When what a page shows last came.
struct LastReport {
  std::optional<Milliseconds> uptime;  // empty: never
};

/// A page that is a table.
class UITableViewController : public UIViewController {
 public:
  virtual void initWithStyle(UITableViewStyle style) { _style = style; }
  void initWithCoder(const NSCoder& coder) override;

  [[nodiscard]] virtual std::ptrdiff_t numberOfSectionsInTableView(UITableView& tableView);
  [[nodiscard]] virtual std::ptrdiff_t numberOfRowsInSection(UITableView& tableView,
                                                             std::ptrdiff_t section) = 0;
  [[nodiscard]] virtual Cell cellForRowAtIndexPath(UITableView& tableView,
                                                   NSIndexPath indexPath) = 0;
  /// Empty: the section has no header.
  [[nodiscard]] virtual std::optional<std::string> titleForHeaderInSection(UITableView& tableView,
                                                                           std::ptrdiff_t section);
  [[nodiscard]] virtual double heightForRowAtIndexPath(UITableView& tableView,
                                                       NSIndexPath indexPath);
  [[nodiscard]] virtual double estimatedHeightForRowAtIndexPath(UITableView& tableView,
                                                                NSIndexPath indexPath);

  /// An optional question of toolkits that explain what a row shows.
  [[nodiscard]] virtual Annotation annotationForRowAtIndexPath(UITableView& tableView,
                                                               NSIndexPath indexPath);
  /// An optional question of toolkits that tell a page's age. Empty: the page shows no metric.
  [[nodiscard]] virtual std::optional<LastReport> lastReport() const { return std::nullopt; }

  [[nodiscard]] UITableView& tableView() { return _tableView; }
  [[nodiscard]] UITableViewStyle style() const { return _style; }

 private:
  UITableView _tableView;
  UITableViewStyle _style = UITableViewStyle::plain;
};

/// A stack of pages; the last is on screen.
class UINavigationController : public UIViewController {
 public:
  /// Class names; empty: the toolkit's own bars.
  virtual void initWithNavigationBarClass(std::optional<std::string> navigationBarClass,
                                          std::optional<std::string> toolbarClass);
  virtual void initWithRootViewController(Page root);

  [[nodiscard]] const std::vector<Page>& viewControllers() const { return _pages; }
  /// The page on screen, or null.
  [[nodiscard]] Page topViewController() const { return _pages.empty() ? nullptr : _pages.back(); }
  void pushViewController(Page page);
  /// Takes the top page off, unless it is the only one. Gives it, or null.
  Page popViewController();

  [[nodiscard]] const std::optional<std::string>& navigationBarClass() const {
    return _navigationBarClass;
  }
  [[nodiscard]] const std::optional<std::string>& toolbarClass() const { return _toolbarClass; }

 private:
  std::vector<Page> _pages;
  std::optional<std::string> _navigationBarClass;
  std::optional<std::string> _toolbarClass;
};

}  // namespace quorin
