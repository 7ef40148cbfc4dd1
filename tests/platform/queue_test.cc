#include "platform/dispatch/queue.h"

#include <unistd.h>

#include <atomic>
#include <future>
#include <vector>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

TEST(SerialQueue, RunsItsWorkInOrderOnAThreadOfItsOwn) {
  const dispatch_queue_t queue = dispatch_queue_create("a.label");
  EXPECT_EQ(queue->label(), "a.label");
  std::vector<int> order;
  std::vector<std::thread::id> threads;
  for (int i = 0; i < 100; ++i)
    dispatch_async(*queue, [&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  waitUntilDone(*queue);
  ASSERT_EQ(order.size(), 100U);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
  for (const auto thread : threads) {
    EXPECT_EQ(thread, threads.front());
    EXPECT_NE(thread, std::this_thread::get_id());
  }
}

TEST(SerialQueue, GivesBackWhatAPieceOfWorkHeldBeforeTheNextRuns) {
  const dispatch_queue_t queue = dispatch_queue_create("q");
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> alive = held;
  bool gone = false;
  dispatch_async(*queue, [held = std::move(held)] {});
  dispatch_async(*queue, [&] { gone = alive.expired(); });
  waitUntilDone(*queue);
  EXPECT_TRUE(gone);
}

TEST(SerialQueue, RunsWhatWasPostedBeforeItEnds) {
  std::atomic<int> ran = 0;
  {
    const dispatch_queue_t queue = dispatch_queue_create("q");
    for (int i = 0; i < 50; ++i) dispatch_async(*queue, [&] { ++ran; });
  }
  EXPECT_EQ(ran, 50);
}

TEST(SerialQueue, MayBeGivenBackByItsOwnWork) {
  auto queue = dispatch_queue_create("q");
  const std::weak_ptr<DispatchQueue> alive = queue;
  std::promise<void> posted;
  std::promise<void> ended;
  DispatchQueue& running = *queue;
  dispatch_async(running, [held = std::move(queue), &posted, &ended]() mutable {
    posted.get_future().wait();
    held.reset();
    ended.set_value();
  });
  posted.set_value();
  ended.get_future().wait();
  EXPECT_TRUE(alive.expired());
}

TEST(SerialQueue, TakesWorkFromItsOwnWork) {
  const dispatch_queue_t queue = dispatch_queue_create("q");
  std::promise<void> done;
  dispatch_async(*queue, [&] { dispatch_async(*queue, [&] { done.set_value(); }); });
  done.get_future().wait();
  waitUntilDone(*queue);
}

/// Both ends of a pipe.
struct Pipe {
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    close(ends[0]);
    close(ends[1]);
  }
  void write(std::string_view text) {
    EXPECT_EQ(::write(ends[1], text.data(), text.size()), std::ssize(text));
  }
  char read() {
    char c = 0;
    EXPECT_EQ(::read(ends[0], &c, 1), 1);
    return c;
  }
  int ends[2];
};

TEST(SerialQueue, ReadsADescriptorBetweenThePiecesThatArePosted) {
  Pipe pipe;
  std::string read;
  std::thread::id reader;
  std::promise<void> all;
  const dispatch_queue_t queue = dispatch_queue_create("q");
  const auto source = dispatch_source_create(*queue, pipe.ends[0], [&] {
    read += pipe.read();
    reader = std::this_thread::get_id();
    if (read.size() == 4) all.set_value();
    return AfterRead::wait;
  });
  pipe.write("ab");
  std::thread::id poster;
  dispatch_async(*queue, [&] { poster = std::this_thread::get_id(); });
  waitUntilDone(*queue);
  pipe.write("cd");
  all.get_future().wait();
  waitUntilDone(*queue);
  EXPECT_EQ(read, "abcd");
  EXPECT_EQ(reader, poster);
}

TEST(SerialQueue, ReadsOnWithoutTheDescriptorWhereThereIsMore) {
  Pipe pipe;
  int runs = 0;
  std::promise<void> done;
  const dispatch_queue_t queue = dispatch_queue_create("q");
  const auto source = dispatch_source_create(*queue, pipe.ends[0], [&] {
    if (++runs == 1) (void)pipe.read();
    if (runs < 3) return AfterRead::goOn;
    done.set_value();
    return AfterRead::end;
  });
  pipe.write("a");
  done.get_future().wait();
  pipe.write("b");
  waitUntilDone(*queue);
  EXPECT_EQ(runs, 3) << "an ended source reads no more";
}

TEST(SerialQueue, ReadsNoMoreOnceTheSourceIsGivenBack) {
  Pipe pipe;
  std::atomic<int> runs = 0;
  const dispatch_queue_t queue = dispatch_queue_create("q");
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> alive = held;
  auto source = dispatch_source_create(*queue, pipe.ends[0], [&runs, held = std::move(held)] {
    ++runs;
    return AfterRead::wait;
  });
  waitUntilDone(*queue);
  source = nullptr;
  waitUntilDone(*queue);
  pipe.write("a");
  waitUntilDone(*queue);
  EXPECT_EQ(runs, 0);
  waitUntilDone(*queue);
  EXPECT_TRUE(alive.expired());
}

TEST(SerialQueue, MayBeGivenBackByWhatItReads) {
  Pipe pipe;
  auto queue = dispatch_queue_create("q");
  const std::weak_ptr<DispatchQueue> alive = queue;
  std::promise<void> ended;
  DispatchQueue& running = *queue;
  dispatch_source_t source;
  source = dispatch_source_create(running, pipe.ends[0], [&, held = std::move(queue)]() mutable {
    held = nullptr;
    ended.set_value();
    return AfterRead::end;
  });
  pipe.write("a");
  ended.get_future().wait();
  EXPECT_TRUE(alive.expired());
}

TEST(MainQueue, RunsPendingWorkInOrderAndNotWhatThatPosts) {
  MainQueue queue;
  std::vector<int> order;
  queue.post([&] {
    order.push_back(1);
    queue.post([&] { order.push_back(3); });
  });
  queue.post([&] { order.push_back(2); });
  EXPECT_TRUE(queue.runPending());
  EXPECT_THAT(order, ElementsAre(1, 2));
  EXPECT_TRUE(queue.runPending());
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
  EXPECT_FALSE(queue.runPending());
}

TEST(MainQueue, RunsWhatIsLeftWhenItsOwnWorkAsks) {
  MainQueue queue;
  std::vector<int> order;
  queue.post([&] { order.push_back(1); });
  queue.post([&, kept = std::make_shared<int>(2)] {
    queue.post([&] { order.push_back(4); });
    EXPECT_TRUE(queue.runPending());
    EXPECT_FALSE(queue.runPending());
    order.push_back(*kept);
  });
  queue.post([&] { order.push_back(3); });
  EXPECT_TRUE(queue.runPending());
  EXPECT_THAT(order, ElementsAre(1, 3, 4, 2));
  EXPECT_FALSE(queue.runPending());
}

TEST(MainQueue, KeepsTheOrderHoweverMuchIsPosted) {
  MainQueue queue;
  std::vector<int> order;
  std::vector<int> expected;
  constexpr int kMore = static_cast<int>(WorkRing::kPlaces) * 3;
  for (int round = 0; round < 3; ++round) {  // the ring begins at another place in each
    for (int i = 0; i < kMore + round; ++i) {
      expected.push_back(i);
      queue.post([&order, i] { order.push_back(i); });
    }
    EXPECT_TRUE(queue.runPending());
    EXPECT_FALSE(queue.runPending());
    EXPECT_EQ(std::exchange(order, {}), std::exchange(expected, {}));
  }
}

TEST(MainQueue, KeepsTheOrderOfEachOfSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kOfEach = 5000;
  MainQueue queue;
  std::vector<std::thread> posters;
  int latest[kThreads] = {};
  int run = 0;
  bool ordered = true;
  for (int thread = 0; thread < kThreads; ++thread)
    posters.emplace_back([&, thread] {
      for (int i = 1; i <= kOfEach; ++i)
        queue.post([&, thread, i] {
          ordered = ordered && latest[thread] == i - 1;
          latest[thread] = i;
          ++run;
        });
    });
  while (run < kThreads * kOfEach) {
    (void)queue.runPending();
    queue.wait(std::chrono::milliseconds(1));
  }
  for (std::thread& poster : posters) poster.join();
  EXPECT_TRUE(ordered);
  EXPECT_FALSE(queue.runPending());
}

TEST(MainQueue, WakesAnotherLoopForWhatWorkPosts) {
  MainQueue queue;
  int woken = 0;
  queue.setWakeUp([&] { ++woken; });
  queue.post([&] { queue.post([] {}); });
  EXPECT_EQ(woken, 1);
  EXPECT_TRUE(queue.runPending());
  EXPECT_EQ(woken, 2);
}

TEST(Work, KeepsAnythingAndGivesItBackOnce) {
  const auto held = std::make_shared<int>(0);
  struct Large {
    std::shared_ptr<int> held;
    char room[200] = {};
    void operator()() const { ++*held; }
  };
  const auto small = [held] { ++*held; };
  for (const bool large : {false, true}) {
    Work work = large ? Work(Large{held}) : Work(small);
    Work moved = std::move(work);
    EXPECT_FALSE(work);  // NOLINT: what was moved from is empty
    EXPECT_TRUE(moved);
    *held = 0;
    moved();
    EXPECT_EQ(*held, 1);
    const long before = held.use_count();
    moved.reset();
    EXPECT_EQ(held.use_count(), before - 1);
    EXPECT_FALSE(moved);
  }
  EXPECT_EQ(held.use_count(), 2);  // here and in `small`
}

TEST(MainQueue, WakesAnotherLoopOnceForEachTimeItWasEmpty) {
  MainQueue queue;
  int woken = 0;
  queue.setWakeUp([&] { ++woken; });
  queue.post([] {});
  queue.post([] {});
  EXPECT_EQ(woken, 1);
  EXPECT_TRUE(queue.runPending());
  queue.post([] {});
  EXPECT_EQ(woken, 2);
}

TEST(MainQueue, WaitsNoLongerThanUntilSomethingIsPosted) {
  MainQueue queue;
  std::thread poster([&] { queue.post([] {}); });
  queue.wait(std::chrono::minutes(10));
  poster.join();
  EXPECT_TRUE(queue.runPending());
  queue.wait(std::chrono::milliseconds(0));
  EXPECT_FALSE(queue.runPending());
}

TEST(MainQueue, IsOneForTheProcess) {
  EXPECT_EQ(&dispatch_get_main_queue(), &dispatch_get_main_queue());
}

TEST(DispatchOnce, RunsItsWorkOnceAcrossThreads) {
  dispatch_once_t once;
  std::atomic<int> ran = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back([&] { dispatch_once(once, [&] { ++ran; }); });
  for (std::thread& thread : threads) thread.join();
  dispatch_once(once, [&] { ++ran; });
  EXPECT_EQ(ran, 1);
}

}  // namespace
}  // namespace quorin::test
