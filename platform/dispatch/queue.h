#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/dispatch/WorkRing.h"

namespace quorin {

/// What comes after reading a descriptor: waiting for more, going on at once, or nothing.
enum class AfterRead { wait, goOn, end };

/// Runs its work while a descriptor can be read, until it is given back. Any thread; a run that has
/// begun goes on.
using dispatch_source_t = std::shared_ptr<void>;

/// Work that is run one piece after the other, in the order in which it was posted. Posting is for
/// any thread.
class DispatchQueue {
 public:
  using Work = quorin::Work;

  explicit DispatchQueue(std::string label) : _label(std::move(label)) {}
  virtual ~DispatchQueue() = default;
  DispatchQueue(const DispatchQueue&) = delete;
  DispatchQueue& operator=(const DispatchQueue&) = delete;

  [[nodiscard]] const std::string& label() const { return _label; }
  virtual void post(Work work) = 0;
  /// Requires: a queue with a thread of its own.
  [[nodiscard]] virtual dispatch_source_t readable(int descriptor, std::function<AfterRead()> work);

 private:
  std::string _label;
};

/// Null where there is no queue.
using dispatch_queue_t = std::shared_ptr<DispatchQueue>;

/// Passed to event handlers beside the event; nothing here uses it.
using dispatch_group_t = std::shared_ptr<void>;

/// A serial queue with a thread of its own.
[[nodiscard]] dispatch_queue_t dispatch_queue_create(std::string label);

inline void dispatch_async(DispatchQueue& queue, DispatchQueue::Work work) {
  queue.post(std::move(work));
}

/// Runs the work on the queue while the descriptor can be read, between the pieces that are posted.
/// Requires: a queue with a thread of its own; the descriptor stays open until the source ends.
[[nodiscard]] inline dispatch_source_t dispatch_source_create(DispatchQueue& queue, int descriptor,
                                                              std::function<AfterRead()> work) {
  return queue.readable(descriptor, std::move(work));
}

/// Returns once everything posted to the queue before has run. Requires: not called on the queue.
void waitUntilDone(DispatchQueue& queue);

using dispatch_once_t = std::once_flag;
inline void dispatch_once(dispatch_once_t& once, const std::function<void()>& work) {
  std::call_once(once, work);
}

/// The main thread's queue. Its work runs inside the run loop, or when a toolkit's loop asks for
/// it.
class MainQueue final : public DispatchQueue {
 public:
  MainQueue() : DispatchQueue("main") {}

  void post(Work work) override;

  /// Runs what was posted so far, and not what that posts. False when there was nothing. Main
  /// thread.
  bool runPending();

  /// Waits until something is posted or the time has passed. Main thread.
  void wait(std::chrono::milliseconds longest);

  /// Called after the first post since the work last ran, on the posting thread, so that another
  /// loop can wake. Main thread.
  void setWakeUp(std::function<void()> wakeUp);

 private:
  void wake();

  WorkRing _work;
  std::atomic<bool> _isIdle = false;  // a loop waits: in `wait`, or behind `_wakeUp`
  bool _hasOtherLoop = false;         // the main thread's own
  std::mutex _mutex;
  std::condition_variable _posted;
  std::function<void()> _wakeUp;
};

[[nodiscard]] MainQueue& dispatch_get_main_queue();

}  // namespace quorin
