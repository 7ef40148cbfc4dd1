#include "platform/dispatch/queue.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <future>
#include <utility>
#include <vector>

#include "platform/foundation/fatal.h"

namespace quorin {

namespace {

/// What a queue's thread and those who post to it share.
struct SerialState {
  struct Reader {
    int descriptor;
    std::function<AfterRead()> work;
  };

  SerialState() = default;
  ~SerialState() {
    if (wake >= 0) close(wake);
  }
  SerialState(const SerialState&) = delete;
  SerialState& operator=(const SerialState&) = delete;

  /// Requires: the lock is held.
  void wakeUp() {
    posted.notify_one();
    if (std::exchange(polling, false)) (void)eventfd_write(wake, 1);
  }
  void remove(const Reader* gone) {
    const std::lock_guard lock(mutex);
    std::erase_if(readers, [&](const auto& reader) { return reader.get() == gone; });
    wakeUp();
  }

  std::mutex mutex;
  std::condition_variable posted;
  std::deque<DispatchQueue::Work> work;
  std::vector<std::shared_ptr<Reader>> readers;
  int wake = -1;         // an eventfd, as soon as there is a reader
  bool polling = false;  // the thread waits for descriptors, and not for `posted`
  bool ending = false;
};

/// Waits until a descriptor can be read, unless `goOn`, or something was posted; then reads. Gives
/// whether there is more to read at once.
bool readOnce(SerialState& state, const std::vector<std::shared_ptr<SerialState::Reader>>& readers,
              bool goOn) {
  std::vector<pollfd> polled{{state.wake, POLLIN, 0}};
  for (const auto& reader : readers) polled.push_back({reader->descriptor, POLLIN, 0});
  (void)poll(polled.data(), polled.size(), goOn ? 0 : -1);
  {
    const std::lock_guard lock(state.mutex);
    state.polling = false;
  }
  eventfd_t count = 0;
  if (polled[0].revents != 0) (void)eventfd_read(state.wake, &count);
  bool more = false;
  for (std::size_t i = 0; i < readers.size(); ++i) {
    if (!goOn && polled[i + 1].revents == 0) continue;
    const AfterRead result = readers[i]->work();
    if (result == AfterRead::end) state.remove(readers[i].get());
    more = more || result == AfterRead::goOn;
  }
  return more;
}

class SerialQueue final : public DispatchQueue {
 public:
  explicit SerialQueue(std::string label) : DispatchQueue(std::move(label)) {}

  // Whoever gives back the last reference may be the queue's own work: then the thread ends itself.
  ~SerialQueue() override {
    {
      const std::lock_guard lock(_state->mutex);
      _state->ending = true;
      _state->wakeUp();
    }
    if (!_thread.joinable()) return;
    if (_thread.get_id() == std::this_thread::get_id())
      _thread.detach();
    else
      _thread.join();
  }

  void post(Work work) override {
    const std::lock_guard lock(_state->mutex);
    _state->work.push_back(std::move(work));
    if (!_thread.joinable()) _thread = std::thread(run, _state);
    _state->wakeUp();
  }

  dispatch_source_t readable(int descriptor, std::function<AfterRead()> work) override {
    const auto reader =
        std::make_shared<SerialState::Reader>(SerialState::Reader{descriptor, std::move(work)});
    const std::lock_guard lock(_state->mutex);
    if (_state->wake < 0) _state->wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    _state->readers.push_back(reader);
    if (!_thread.joinable()) _thread = std::thread(run, _state);
    _state->wakeUp();
    return {reader.get(), [weak = std::weak_ptr(_state)](const SerialState::Reader* gone) {
              if (const auto state = weak.lock()) state->remove(gone);
            }};
  }

 private:
  static void run(const std::shared_ptr<SerialState>& shared) {
    SerialState& state = *shared;
    bool more = false;
    std::unique_lock lock(state.mutex);
    while (true) {
      if (!state.work.empty()) {
        Work work = std::move(state.work.front());
        state.work.pop_front();
        lock.unlock();
        work();
        work.reset();  // what it holds is given back before the next piece runs
        lock.lock();
      } else if (state.ending) {
        return;
      } else if (state.readers.empty()) {
        state.posted.wait(
            lock, [&] { return state.ending || !state.work.empty() || !state.readers.empty(); });
      } else {
        const auto readers = state.readers;
        state.polling = true;
        lock.unlock();
        more = readOnce(state, readers, more);
        lock.lock();
      }
    }
  }

  std::shared_ptr<SerialState> _state = std::make_shared<SerialState>();
  std::thread _thread;
};

}  // namespace

dispatch_source_t DispatchQueue::readable(int /*descriptor*/, std::function<AfterRead()> /*work*/) {
  fatal();
}

dispatch_queue_t dispatch_queue_create(std::string label) {
  return std::make_shared<SerialQueue>(std::move(label));
}

void waitUntilDone(DispatchQueue& queue) {
  std::promise<void> done;
  queue.post([&done] { done.set_value(); });
  done.get_future().wait();
}

// The fence orders the work before the look at the flag, as `wait` orders the flag before its look
// at the work: one of the two sees the other.
void MainQueue::post(Work work) {
  _work.post(std::move(work));
  std::atomic_thread_fence(std::memory_order_seq_cst);
  if (_isIdle.load(std::memory_order_relaxed) && _isIdle.exchange(false)) wake();
}

void MainQueue::wake() {
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(_mutex);
    wakeUp = _wakeUp;
  }
  _posted.notify_one();
  if (wakeUp) wakeUp();
}

bool MainQueue::runPending() {
  const bool worked = _work.run();
  if (!_hasOtherLoop) return worked;
  _isIdle.store(true);
  std::atomic_thread_fence(std::memory_order_seq_cst);
  if (!_work.empty() && _isIdle.exchange(false)) wake();
  return worked;
}

void MainQueue::setWakeUp(std::function<void()> wakeUp) {
  const std::lock_guard lock(_mutex);
  _wakeUp = std::move(wakeUp);
  _hasOtherLoop = static_cast<bool>(_wakeUp);
  _isIdle.store(_hasOtherLoop);
}

void MainQueue::wait(std::chrono::milliseconds longest) {
  std::unique_lock lock(_mutex);
  _isIdle.store(true);
  std::atomic_thread_fence(std::memory_order_seq_cst);
  if (_work.empty()) _posted.wait_for(lock, longest, [&] { return !_isIdle.load(); });
  _isIdle.store(false);
}

MainQueue& dispatch_get_main_queue() {
  // Never destroyed: other threads post until the process ends.
  static MainQueue& queue = *new MainQueue;
  return queue;
}

}  // namespace quorin
