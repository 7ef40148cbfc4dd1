#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <utility>

#include "platform/foundation/recycle.h"

namespace quorin {

/// A growing sequence whose first `few` elements need no memory beside itself.
template <class T, std::uint32_t few>
class InlineVector {
 public:
  InlineVector() = default;
  InlineVector(const InlineVector&) = delete;
  InlineVector& operator=(const InlineVector&) = delete;
  ~InlineVector() {
    clear();
    if (_capacity != few) giveMemory(_first, _capacity * sizeof(T));
  }

  [[nodiscard]] std::size_t size() const { return _size; }
  [[nodiscard]] bool empty() const { return _size == 0; }
  [[nodiscard]] T* begin() { return _first; }
  [[nodiscard]] T* end() { return _first + _size; }
  [[nodiscard]] const T* begin() const { return _first; }
  [[nodiscard]] const T* end() const { return _first + _size; }
  /// Requires: index < size.
  [[nodiscard]] const T& operator[](std::size_t index) const { return _first[index]; }
  [[nodiscard]] const T& at(std::size_t index) const {
    if (index >= _size) throw std::out_of_range("InlineVector");
    return _first[index];
  }

  void push_back(T value) {
    if (_size == _capacity) grow();
    new (_first + _size++) T(std::move(value));
  }
  void clear() {
    std::destroy_n(_first, _size);
    _size = 0;
  }

 private:
  [[gnu::noinline]] void grow() {
    T* larger = static_cast<T*>(takeMemory(2 * _capacity * sizeof(T)));
    std::uninitialized_move_n(_first, _size, larger);
    std::destroy_n(_first, _size);
    if (_capacity != few) giveMemory(_first, _capacity * sizeof(T));
    _first = larger;
    _capacity *= 2;
  }

  T* _first = reinterpret_cast<T*>(_inline);
  std::uint32_t _size = 0;
  std::uint32_t _capacity = few;
  alignas(T) std::byte _inline[few * sizeof(T)];
};

}  // namespace quorin
