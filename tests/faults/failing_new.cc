#include "tests/faults/failing_new.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace quorin::test {

namespace {

std::atomic<std::uint64_t> count = 0;
std::atomic<std::uint64_t> failingOne = 0;

void* take(std::size_t size, std::size_t alignment) {
  if (++count == failingOne) return nullptr;
  if (alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__) return std::malloc(size == 0 ? 1 : size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* takeOrThrow(std::size_t size, std::size_t alignment) {
  if (void* memory = take(size, alignment)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void countAllocations(std::uint64_t failing) {
  count = 0;
  failingOne = failing;
}

std::uint64_t countedAllocations() { return count; }

}  // namespace quorin::test

using quorin::test::take;
using quorin::test::takeOrThrow;

// The other forms of new and delete come down to these.
void* operator new(std::size_t size) { return takeOrThrow(size, 1); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return takeOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size) { return takeOrThrow(size, 1); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return take(size, 1);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }
