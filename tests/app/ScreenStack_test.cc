#include "platform/screen/ScreenStack.h"

#include "app/interface.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

class Pushes final : public ScreenStackObserver {
 public:
  void willPush() override {}
  void didPush() override { taken.emplace_back("push"); }
  void willPop() override {}
  void didPop() override { taken.emplace_back("pop"); }
  std::vector<std::string> taken;
};

/// The launched application on a screen.
struct Launched {
  Launched() {
    application.launch("AppDelegate");
    stack.emplace(application);
    stack->setObserver(&pushes);
  }
  std::vector<std::string> titles() const {
    std::vector<std::string> titles;
    for (const auto& page : stack->pages()) titles.push_back(page->title());
    return titles;
  }
  RecordedLog log;
  ScriptedService service;
  UIApplication application{interfaceDescription()};
  Pushes pushes;
  std::optional<ScreenStack> stack;
};

TEST(ScreenStack, FollowsTheNavigation) {
  Launched screen;
  EXPECT_THAT(screen.titles(), ElementsAre("Quorin"));
  EXPECT_EQ(screen.stack->path(), "");
  EXPECT_TRUE(screen.stack->press(0, 1));
  EXPECT_TRUE(screen.stack->press(1, 1));
  EXPECT_THAT(screen.titles(), ElementsAre("Quorin", "LTE", "RRC State"));
  EXPECT_EQ(screen.stack->path(), "LTE › RRC State");
  EXPECT_EQ(screen.application.navigation().viewControllers().size(), 3U);
  EXPECT_TRUE(screen.stack->back());
  EXPECT_TRUE(screen.stack->back());
  EXPECT_FALSE(screen.stack->back());
  EXPECT_THAT(screen.pushes.taken, ElementsAre("push", "push", "pop", "pop"));
  EXPECT_EQ(screen.application.navigation().viewControllers().size(), 1U);
}

TEST(ScreenStack, OpensAnotherRowOfAPageThatIsNotOnTop) {
  Launched screen;
  screen.stack->press(0, 1);
  screen.stack->press(1, 1);
  EXPECT_TRUE(screen.stack->press(0, 3));
  EXPECT_THAT(screen.titles(), ElementsAre("Quorin", "GSM"));
  EXPECT_TRUE(screen.stack->pages()[0]->lines()[3].open);
  EXPECT_FALSE(screen.stack->pages()[0]->lines()[1].open);
}

TEST(ScreenStack, KeepsThePageThatIsOpenAlready) {
  Launched screen;
  screen.stack->press(0, 1);
  screen.stack->press(1, 1);
  screen.pushes.taken.clear();
  EXPECT_TRUE(screen.stack->press(0, 1));
  EXPECT_TRUE(screen.pushes.taken.empty());
}

TEST(ScreenStack, RefusesLinesThatLeadNowhere) {
  Launched screen;
  EXPECT_FALSE(screen.stack->press(0, 4));
  EXPECT_FALSE(screen.stack->press(1, 0));
  screen.stack->press(0, 1);
  screen.stack->press(1, 4);
  EXPECT_FALSE(screen.stack->press(2, 0));
}

}  // namespace
}  // namespace quorin::test
