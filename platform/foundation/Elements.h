#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

#include "platform/foundation/Object.h"

namespace quorin {

/// What lists and dictionaries share when they are copied: elements in one block of memory, behind
/// the object. `plain` elements, which hold no object, need not be destroyed one by one.
template <class Element>
class Elements final : public Object {
 public:
  static Ref<Elements> create(std::size_t capacity) {
    void* memory = takeMemory(sizeof(Elements) + capacity * sizeof(Element));
    return Ref<Elements>(new (memory) Elements(static_cast<std::uint32_t>(capacity)));
  }
  ~Elements() override {
    if (!_plain) std::destroy_n(first(), _size);
  }
  static void operator delete(Elements* elements, std::destroying_delete_t) {
    const std::size_t size = sizeof(Elements) + elements->_capacity * sizeof(Element);
    elements->~Elements();
    giveMemory(elements, size);
  }

  /// The place of the next element and its successors. Requires: `setSize` once they are made.
  [[nodiscard]] Element* place() { return first() + _size; }
  void setSize(const Element* end, bool plain) {
    _size = static_cast<std::uint32_t>(end - first());
    _plain = plain;
  }

  [[nodiscard]] std::span<Element> all() { return {first(), _size}; }
  [[nodiscard]] std::size_t room() const { return _capacity - _size; }
  /// Requires: room.
  void append(Element&& element, bool plain) {
    new (first() + _size++) Element(std::move(element));
    _plain = _plain && plain;
  }
  void setNotPlain() { _plain = false; }

  /// Makes `elements` one block that nobody else holds and that has room for `more`.
  static Elements& own(Ref<Elements>& elements, std::size_t more) {
    if (elements && elements->references() == 1 && elements->room() >= more) return *elements;
    return made(elements, more);
  }

  bool marked = false;  // whatever its holder means by it

 private:
  explicit Elements(std::uint32_t capacity) : _capacity(capacity) {}
  [[nodiscard]] Element* first() { return reinterpret_cast<Element*>(this + 1); }

  [[gnu::noinline]] static Elements& made(Ref<Elements>& elements, std::size_t more) {
    constexpr std::size_t kLeast = 4;
    const std::size_t size = elements ? elements->_size : 0;
    const bool shared = elements && elements->references() > 1;
    const auto made =
        create(std::max({size + more, shared || !elements ? 0 : 2 * size, more == 0 ? 0 : kLeast}));
    if (elements) {
      if (elements->_plain)
        std::memcpy(static_cast<void*>(made->first()), elements->first(), size * sizeof(Element));
      else if (shared)
        std::uninitialized_copy_n(elements->first(), size, made->first());
      else
        std::uninitialized_move_n(elements->first(), size, made->first());
      made->_size = elements->_size;
      made->_plain = elements->_plain;
      made->marked = elements->marked;
    }
    elements = made;
    return *elements;
  }

  std::uint32_t _size = 0;
  std::uint32_t _capacity;
  bool _plain = true;
};

}  // namespace quorin
