#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>

namespace quorin {

/// Memory that a thread gave back and takes again, by size, so that the steady state asks the heap
/// for nothing. At most `kMostKept` bytes of a size are kept; a thread's end keeps them.
struct RecycledMemory {
  static constexpr std::size_t kStep = 32;             // bytes between two sizes
  static constexpr std::size_t kLargest = 1 << 14;     // larger blocks come from the heap
  static constexpr std::uint32_t kMostKept = 1 << 17;  // bytes

  struct Free {
    Free* next;
  };
  struct Size {
    Free* first = nullptr;
    std::uint32_t room = 0;  // for so many blocks more
  };
  std::array<Size, kLargest / kStep + 1> sizes{};

  constexpr RecycledMemory() {
    for (std::size_t row = 1; row < sizes.size(); ++row)
      sizes[row].room = kMostKept / static_cast<std::uint32_t>(row * kStep);
  }

  [[nodiscard]] static constexpr std::size_t row(std::size_t size) {
    return (size + kStep - 1) / kStep;
  }
};

// A sanitizer sees every block's own life: there, all memory comes from the heap.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kRecycles = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kRecycles = false;
#else
inline constexpr bool kRecycles = true;
#endif
#else
inline constexpr bool kRecycles = true;
#endif

inline constinit thread_local RecycledMemory recycledMemory;

/// Memory for `size` bytes, aligned as by `new`. Any thread.
[[nodiscard]] [[gnu::always_inline]] inline void* takeMemory(std::size_t size) {
  if constexpr (!kRecycles) return ::operator new(size);
  if (size > RecycledMemory::kLargest) return ::operator new(size);
  const std::size_t row = RecycledMemory::row(size);
  RecycledMemory::Size& kept = recycledMemory.sizes[row];
  RecycledMemory::Free* memory = kept.first;
  if (!memory) return ::operator new(row* RecycledMemory::kStep);
  kept.first = memory->next;
  ++kept.room;
  return memory;
}

/// Gives back what `takeMemory` gave for the same size. Any thread.
[[gnu::always_inline]] inline void giveMemory(void* memory, std::size_t size) noexcept {
  if constexpr (!kRecycles) return ::operator delete(memory);
  if (size > RecycledMemory::kLargest) return ::operator delete(memory);
  const std::size_t row = RecycledMemory::row(size);
  RecycledMemory::Size& kept = recycledMemory.sizes[row];
  if (kept.room == 0) [[unlikely]]
    return ::operator delete(memory);
  --kept.room;
  kept.first = new (memory) RecycledMemory::Free{kept.first};
}

/// Recycled memory for a container.
template <class T>
struct Recycling {
  using value_type = T;

  Recycling() = default;
  template <class U>
  Recycling(const Recycling<U>&) {}

  [[nodiscard]] T* allocate(std::size_t count) {
    return static_cast<T*>(takeMemory(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t count) noexcept { giveMemory(memory, count * sizeof(T)); }
  friend bool operator==(const Recycling&, const Recycling&) { return true; }
};

}  // namespace quorin
