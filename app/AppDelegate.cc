#include "app/AppDelegate.h"

namespace quorin {

bool AppDelegate::didFinishLaunchingWithOptions(UIApplication& /*application*/,
                                                const LaunchOptions& /*options*/) {
  return true;
}

void AppDelegate::applicationWillResignActive(UIApplication& /*application*/) {}
void AppDelegate::applicationDidEnterBackground(UIApplication& /*application*/) {}
void AppDelegate::applicationWillEnterForeground(UIApplication& /*application*/) {}
void AppDelegate::applicationDidBecomeActive(UIApplication& /*application*/) {}
void AppDelegate::applicationWillTerminate(UIApplication& /*application*/) {}

}  // namespace quorin
