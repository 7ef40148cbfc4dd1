#pragma once

#include "platform/toolkit/UIStoryboard.h"

namespace quorin {

class UIApplication;

class UIWindow {
 public:
  explicit UIWindow(std::shared_ptr<UINavigationController> root) : _root(std::move(root)) {}
  [[nodiscard]] const std::shared_ptr<UINavigationController>& rootViewController() const {
    return _root;
  }

 private:
  std::shared_ptr<UINavigationController> _root;
};

/// What the platform handed over at launch; this application takes none of it.
struct LaunchOptions {};

/// Hears of the application's life cycle. Main thread.
class UIApplicationDelegate {
 public:
  virtual ~UIApplicationDelegate() = default;
  [[nodiscard]] virtual bool didFinishLaunchingWithOptions(UIApplication& application,
                                                           const LaunchOptions& options) = 0;
  virtual void applicationWillResignActive(UIApplication& application) = 0;
  virtual void applicationDidEnterBackground(UIApplication& application) = 0;
  virtual void applicationWillEnterForeground(UIApplication& application) = 0;
  virtual void applicationDidBecomeActive(UIApplication& application) = 0;
  virtual void applicationWillTerminate(UIApplication& application) = 0;
  [[nodiscard]] virtual std::shared_ptr<UIWindow> window() const = 0;
  virtual void setWindow(std::shared_ptr<UIWindow> window) = 0;
};

/// The running application. Main thread.
class UIApplication {
 public:
  explicit UIApplication(const UIStoryboard& storyboard) : _storyboard(storyboard) {}

  /// Makes the delegate of this class, the window, the navigation root and its first page, loads
  /// their views and tells the delegate. Fatal when there is no such class.
  void launch(std::string_view delegateClassName);
  /// Tells the delegate that the application ends.
  void terminate();

  [[nodiscard]] const UIStoryboard& storyboard() const { return _storyboard; }
  [[nodiscard]] const std::shared_ptr<UIApplicationDelegate>& delegate() const { return _delegate; }
  [[nodiscard]] UINavigationController& navigation() const {
    return *_delegate->window()->rootViewController();
  }

 private:
  const UIStoryboard& _storyboard;
  std::shared_ptr<UIApplicationDelegate> _delegate;
};

/// Runs the application with the toolkit that the program is linked with; `principalClassName` is
/// empty for the toolkit's own application class. Gives 0 when the loop returns, or what the
/// toolkit's command line calls for.
[[nodiscard]] int UIApplicationMain(int argc, char** argv,
                                    std::optional<std::string> principalClassName,
                                    std::string_view delegateClassName,
                                    const UIStoryboard& storyboard);

}  // namespace quorin
