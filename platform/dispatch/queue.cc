#include "platform/dispatch/queue.h"

#include <future>

namespace quorin {

namespace {

class SerialQueue final : public DispatchQueue {
 public:
  explicit SerialQueue(std::string label) : DispatchQueue(std::move(label)) {}

  // Whoever gives back the last reference may be the queue's own work: then the thread ends itself.
  ~SerialQueue() override {
    {
      const std::lock_guard lock(_state->mutex);
      _state->ending = true;
    }
    _state->posted.notify_one();
    if (!_thread.joinable()) return;
    if (_thread.get_id() == std::this_thread::get_id())
      _thread.detach();
    else
      _thread.join();
  }

  void post(Work work) override {
    {
      const std::lock_guard lock(_state->mutex);
      _state->work.push_back(std::move(work));
      if (!_thread.joinable()) _thread = std::thread(run, _state);
    }
    _state->posted.notify_one();
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable posted;
    std::deque<Work> work;
    bool ending = false;
  };

  static void run(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    while (true) {
      state->posted.wait(lock, [&] { return state->ending || !state->work.empty(); });
      if (state->work.empty()) return;
      Work work = std::move(state->work.front());
      state->work.pop_front();
      lock.unlock();
      work();
      work = nullptr;  // what it holds is given back before the next piece runs
      lock.lock();
    }
  }

  std::shared_ptr<State> _state = std::make_shared<State>();
  std::thread _thread;
};

}  // namespace

dispatch_queue_t dispatch_queue_create(std::string label) {
  return std::make_shared<SerialQueue>(std::move(label));
}

void waitUntilDone(DispatchQueue& queue) {
  std::promise<void> done;
  queue.post([&done] { done.set_value(); });
  done.get_future().wait();
}

void MainQueue::post(Work work) {
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(_mutex);
    if (_work.empty()) wakeUp = _wakeUp;
    _work.push_back(std::move(work));
  }
  _posted.notify_one();
  if (wakeUp) wakeUp();
}

bool MainQueue::runPending() {
  std::deque<Work> batch;
  {
    const std::lock_guard lock(_mutex);
    batch.swap(_work);
  }
  for (Work& work : batch) {
    work();
    work = nullptr;
  }
  return !batch.empty();
}

void MainQueue::wait(std::chrono::milliseconds longest) {
  std::unique_lock lock(_mutex);
  _posted.wait_for(lock, longest, [&] { return !_work.empty(); });
}

void MainQueue::setWakeUp(std::function<void()> wakeUp) {
  const std::lock_guard lock(_mutex);
  _wakeUp = std::move(wakeUp);
}

MainQueue& dispatch_get_main_queue() {
  // Never destroyed: other threads post until the process ends.
  static MainQueue& queue = *new MainQueue;
  return queue;
}

}  // namespace quorin
