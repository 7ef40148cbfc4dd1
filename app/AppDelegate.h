#pragma once

#include "platform/platform.h"

namespace quorin {

/// Holds the window; takes nothing from the life cycle.
class AppDelegate final : public UIApplicationDelegate {
 public:
  [[nodiscard]] bool didFinishLaunchingWithOptions(UIApplication& application,
                                                   const LaunchOptions& options) override;
  void applicationWillResignActive(UIApplication& application) override;
  void applicationDidEnterBackground(UIApplication& application) override;
  void applicationWillEnterForeground(UIApplication& application) override;
  void applicationDidBecomeActive(UIApplication& application) override;
  void applicationWillTerminate(UIApplication& application) override;

  [[nodiscard]] std::shared_ptr<UIWindow> window() const override { return _window; }
  void setWindow(std::shared_ptr<UIWindow> window) override { _window = std::move(window); }

 private:
  std::shared_ptr<UIWindow> _window;
};

}  // namespace quorin
