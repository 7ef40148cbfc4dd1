#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace quorin {

/// A piece of work that runs at most once. What it captures is kept beside it while it is small,
/// so that posting an event asks the heap for nothing.
class Work {
 public:
  Work() = default;
  template <class Callable>
  requires(!std::is_same_v<std::remove_cvref_t<Callable>, Work>) Work(Callable&& callable) {
    using Kept = std::remove_cvref_t<Callable>;
    if constexpr (sizeof(Kept) <= kRoom && alignof(Kept) <= alignof(void*) &&
                  std::is_nothrow_move_constructible_v<Kept>) {
      new (_room) Kept(std::forward<Callable>(callable));
      _kind = &kInside<Kept>;
    } else {
      new (_room) Kept*(new Kept(std::forward<Callable>(callable)));
      _kind = &kOutside<Kept>;
    }
  }
  Work(Work&& other) noexcept { takeOver(other); }
  Work& operator=(Work&& other) noexcept {
    if (this != &other) {
      reset();
      takeOver(other);
    }
    return *this;
  }
  ~Work() { reset(); }

  explicit operator bool() const { return _kind != nullptr; }
  /// Requires: there is work.
  void operator()() { _kind->run(_room); }
  /// Gives back what it holds.
  void reset() {
    if (const Kind* kind = std::exchange(_kind, nullptr)) kind->destroy(_room);
  }

 private:
  static constexpr std::size_t kRoom = 40;  // with it, a place of the ring is one cache line
  struct Kind {
    void (*run)(std::byte* room);
    void (*move)(std::byte* room, std::byte* to);  // and leaves nothing behind
    void (*destroy)(std::byte* room);
  };

  template <class Kept>
  static Kept& in(std::byte* room) {
    return *std::launder(reinterpret_cast<Kept*>(room));
  }
  template <class Kept>
  static constexpr Kind kInside = {[](std::byte* room) { in<Kept>(room)(); },
                                   [](std::byte* room, std::byte* to) {
                                     new (to) Kept(std::move(in<Kept>(room)));
                                     in<Kept>(room).~Kept();
                                   },
                                   [](std::byte* room) { in<Kept>(room).~Kept(); }};
  template <class Kept>
  static constexpr Kind kOutside = {
      [](std::byte* room) { (*in<Kept*>(room))(); },
      [](std::byte* room, std::byte* to) { new (to) Kept*(in<Kept*>(room)); },
      [](std::byte* room) { delete in<Kept*>(room); }};

  void takeOver(Work& other) {
    _kind = std::exchange(other._kind, nullptr);
    if (_kind) _kind->move(other._room, _room);
  }

  const Kind* _kind = nullptr;
  alignas(void*) std::byte _room[kRoom];
};

}  // namespace quorin
