#include "app/AppDelegate.h"

#include "app/interface.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::IsEmpty;

TEST(AppDelegate, SaysYesToTheLaunchAndDoesNothingInItsSixBodies) {
  RecordedLog log;
  ScriptedService service;
  UIApplication application(interfaceDescription());
  AppDelegate delegate;
  EXPECT_TRUE(delegate.didFinishLaunchingWithOptions(application, {}));
  delegate.applicationWillResignActive(application);
  delegate.applicationDidEnterBackground(application);
  delegate.applicationWillEnterForeground(application);
  delegate.applicationDidBecomeActive(application);
  delegate.applicationWillTerminate(application);
  EXPECT_THAT(log.printedLines(), IsEmpty());
  EXPECT_THAT(log.systemLines(), IsEmpty());
  EXPECT_THAT(service.clientNames(), IsEmpty());
  EXPECT_THAT(service.calls(), IsEmpty());
  EXPECT_FALSE(delegate.window());
  EXPECT_FALSE(application.delegate());
  EXPECT_FALSE(dispatch_get_main_queue().runPending());
}

TEST(AppDelegate, HoldsTheWindowThatItWasGiven) {
  AppDelegate delegate;
  EXPECT_FALSE(delegate.window());
  auto window = std::make_shared<UIWindow>(nullptr);
  const std::weak_ptr<UIWindow> alive = window;
  delegate.setWindow(window);
  EXPECT_EQ(delegate.window(), window);
  window.reset();
  EXPECT_FALSE(alive.expired());
  delegate.setWindow(nullptr);
  EXPECT_FALSE(delegate.window());
  EXPECT_TRUE(alive.expired());
}

}  // namespace
}  // namespace quorin::test
