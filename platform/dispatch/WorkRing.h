#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/dispatch/Work.h"

namespace quorin {

/// Work from any thread for one that takes it, in the order of each thread's posts. Posting takes
/// no lock, except while more than `kPlaces` pieces wait; nothing is ever refused.
class WorkRing {
 public:
  static constexpr std::uint64_t kPlaces = 1024;

  WorkRing() : _places(std::make_unique<Place[]>(kPlaces)) {
    for (std::uint64_t i = 0; i < kPlaces; ++i) _places[i].turn.store(i);
  }

  /// Any thread.
  void post(Work work) {
    if (!_overflows.load(std::memory_order_acquire) && put(work)) return;
    const std::lock_guard lock(_mutex);
    _overflow.push_back(std::move(work));
    _overflows.store(true, std::memory_order_release);
  }

  /// Runs what was posted so far, and not what that posts. False when there was nothing. The taking
  /// thread.
  bool run() {
    std::vector<Work> overflow;
    std::uint64_t end = 0;
    if (_overflows.load(std::memory_order_acquire)) {
      // What a thread put into the ring before its work overflowed stands before `end`.
      const std::lock_guard lock(_mutex);
      end = _tail.load(std::memory_order_acquire);
      overflow.swap(_overflow);
      _overflows.store(false, std::memory_order_release);
    } else {
      // The posters' end is looked at only where there is something: looking at it delays them.
      if (!isNextThere()) return false;
      end = _tail.load(std::memory_order_acquire);
    }
    const bool any = _head < end || !overflow.empty();
    while (_head < end) runNext();  // work may run the ring itself
    for (Work& work : overflow) {
      work();
      work.reset();
    }
    return any;
  }

  /// Whether there is nothing to run; what is being posted is not there yet. The taking thread.
  [[nodiscard]] bool empty() const {
    return !isNextThere() && !_overflows.load(std::memory_order_acquire);
  }

 private:
  struct alignas(64) Place {
    std::atomic<std::uint64_t> turn;  // its position while free, one more when it holds work
    Work work;
  };
  static_assert(sizeof(Place) == 64);

  /// False, with the work untouched, when the ring is full.
  bool put(Work& work) {
    std::uint64_t position = _tail.load(std::memory_order_relaxed);
    while (true) {
      Place& place = _places[position % kPlaces];
      const std::uint64_t turn = place.turn.load(std::memory_order_acquire);
      if (turn == position) {
        if (!_tail.compare_exchange_weak(position, position + 1, std::memory_order_relaxed))
          continue;
        place.work = std::move(work);
        place.turn.store(position + 1, std::memory_order_release);
        return true;
      }
      if (turn < position) return false;
      position = _tail.load(std::memory_order_relaxed);
    }
  }

  [[nodiscard]] bool isNextThere() const {
    return _places[_head % kPlaces].turn.load(std::memory_order_acquire) == _head + 1;
  }

  /// Runs the next piece where it stands; waits for the moment that a poster may still need to put
  /// it there.
  void runNext() {
    const std::uint64_t position = _head++;
    Place& place = _places[position % kPlaces];
    while (place.turn.load(std::memory_order_acquire) != position + 1) {
    }
    place.work();
    place.work.reset();
    place.turn.store(position + kPlaces, std::memory_order_release);
  }

  std::unique_ptr<Place[]> _places;
  alignas(64) std::atomic<std::uint64_t> _tail = 0;
  alignas(64) std::uint64_t _head = 0;  // the taking thread's own
  alignas(64) std::atomic<bool> _overflows = false;
  std::mutex _mutex;
  std::vector<Work> _overflow;
};

}  // namespace quorin
