#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/foundation/recycle.h"

namespace quorin {

/// Memory for a collection and all that it holds, which live and end as one.
class Block {
 public:
  explicit Block(std::size_t size)
      : _first(static_cast<std::uint8_t*>(takeMemory(size))), _next(_first), _end(_first + size) {}
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  ~Block() {
    if (_first) giveMemory(_first, size());
  }

  /// The next bytes, aligned for a pointer; null where there is no room.
  [[nodiscard]] [[gnu::always_inline]] void* take(std::size_t bytes) {
    const std::size_t whole = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    std::uint8_t* const next = _next + whole;  // of no size that an address would run over
    if (next > _end) [[unlikely]]
      return isFull = true, nullptr;
    void* taken = std::exchange(_next, next);
    if (!taken) __builtin_unreachable();  // or whoever asks would ask once more
    return taken;
  }
  /// What was taken last ends here.
  void cut(const void* end) {
    const auto used = static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - _first);
    _next = _first + (used + kAlignment - 1) / kAlignment * kAlignment;
  }
  /// What lies first in it, and what the others belong to.
  [[nodiscard]] void* first() const { return _first; }
  [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(_end - _first); }
  /// Leaves the memory to what lies first in it.
  void handOver() { _first = nullptr; }

  bool isFull = false;  // something had no room

 private:
  static constexpr std::size_t kAlignment = alignof(void*);

  std::uint8_t* _first;
  std::uint8_t* _next;
  std::uint8_t* _end;
};

}  // namespace quorin
