#include "platform/dispatch/RunLoop.h"

#include "platform/dispatch/queue.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

TEST(RunLoop, FiresARepeatingTimerWheneverItIsDue) {
  VirtualClock clock;
  int fired = 0;
  const auto timer = scheduleTimer(Milliseconds(100), [&] { ++fired; });
  EXPECT_EQ(timer->interval(), Milliseconds(100));
  EXPECT_EQ(timer->next(), Milliseconds(100));
  EXPECT_FALSE(RunLoop::mainRunLoop().runOnce());
  clock.advance(Milliseconds(99));
  EXPECT_EQ(fired, 0);
  clock.advance(Milliseconds(1));
  EXPECT_EQ(fired, 1);
  clock.advance(Milliseconds(1000));
  EXPECT_EQ(fired, 11);
}

/// A clock that jumps without anybody running the loop.
class JumpingClock final : public Clock {
 public:
  JumpingClock() { setCurrentClock(*this); }
  ~JumpingClock() override { setCurrentClock(systemClock()); }
  [[nodiscard]] Milliseconds uptime() const override { return now; }
  [[nodiscard]] Milliseconds sinceEpoch() const override { return now; }
  Milliseconds now{0};
};

TEST(RunLoop, FiresATimerThatIsSeveralIntervalsLateOnceAndKeepsItsBeat) {
  JumpingClock clock;
  int fired = 0;
  const auto timer = scheduleTimer(Milliseconds(100), [&] { ++fired; });
  clock.now = Milliseconds(350);
  EXPECT_TRUE(RunLoop::mainRunLoop().runOnce());
  EXPECT_EQ(fired, 1);
  EXPECT_EQ(timer->next(), Milliseconds(400));
  EXPECT_FALSE(RunLoop::mainRunLoop().runOnce());
  clock.now = Milliseconds(400);
  EXPECT_TRUE(RunLoop::mainRunLoop().runOnce());
  EXPECT_EQ(fired, 2);
}

TEST(RunLoop, TellsTheUptimeOfTheNextTimer) {
  const VirtualClock clock;
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), std::nullopt);
  (void)scheduleTimer(Milliseconds(700), [] {});
  (void)scheduleTimer(Milliseconds(300), [] {});
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), Milliseconds(300));
}

TEST(RunLoop, ForgetsATimerThatWasInvalidatedAndGivesBackWhatItHeld) {
  VirtualClock clock;
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> alive = held;
  const auto timer = scheduleTimer(Milliseconds(100), [held = std::move(held)] {});
  EXPECT_TRUE(timer->isValid());
  EXPECT_FALSE(alive.expired());
  timer->invalidate();
  EXPECT_FALSE(timer->isValid());
  EXPECT_TRUE(alive.expired());
  EXPECT_EQ(RunLoop::mainRunLoop().nextTimer(), std::nullopt);
  clock.advance(Milliseconds(1000));
}

TEST(RunLoop, LetsATimerInvalidateItselfAndAddAnother) {
  VirtualClock clock;
  std::vector<std::string> fired;
  std::shared_ptr<Timer> timer;
  timer = scheduleTimer(Milliseconds(100), [&] {
    fired.emplace_back("first");
    timer->invalidate();
    (void)scheduleTimer(Milliseconds(100), [&] { fired.emplace_back("second"); });
  });
  clock.advance(Milliseconds(200));
  EXPECT_THAT(fired, ElementsAre("first", "second"));
  timer = nullptr;
}

TEST(RunLoop, RunsTheMainQueuesWork) {
  int ran = 0;
  dispatch_async(dispatch_get_main_queue(), [&] { ++ran; });
  EXPECT_TRUE(RunLoop::mainRunLoop().runOnce());
  EXPECT_EQ(ran, 1);
  EXPECT_FALSE(RunLoop::mainRunLoop().runOnce());
}

TEST(RunLoop, RunsUntilItIsStopped) {
  int ran = 0;
  dispatch_async(dispatch_get_main_queue(), [&] {
    ++ran;
    dispatch_async(dispatch_get_main_queue(), [&] {
      ++ran;
      RunLoop::mainRunLoop().stop();
    });
  });
  RunLoop::mainRunLoop().run();
  EXPECT_EQ(ran, 2);
}

}  // namespace
}  // namespace quorin::test
