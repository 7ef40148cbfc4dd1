#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

#include "platform/foundation/Object.h"

namespace quorin {

/// Which elements of a block hold an object: one bit each, the last for all from there on.
class Holders {
 public:
  void add(std::size_t index) { _bits |= std::uint64_t{1} << std::min(index, kLast); }
  [[nodiscard]] bool none() const { return _bits == 0; }

  /// Visits the indexes below `size`, ascending.
  template <class Visit>
  void each(std::size_t size, Visit visit) const {
    for (std::uint64_t rest = _bits; rest != 0; rest &= rest - 1) {
      auto index = static_cast<std::size_t>(std::countr_zero(rest));
      if (index < kLast)
        visit(index);
      else
        for (; index < size; ++index) visit(index);
    }
  }

 private:
  static constexpr std::size_t kLast = 63;
  std::uint64_t _bits = 0;
};

/// What lists and dictionaries share when they are copied: elements in one block of memory, behind
/// the object. Only elements that hold an object are destroyed and counted one by one.
template <class Element>
class Elements final : public Object {
 public:
  static Ref<Elements> create(std::size_t capacity) {
    void* memory = takeMemory(sizeof(Elements) + capacity * sizeof(Element));
    return Ref<Elements>(new (memory) Elements(static_cast<std::uint32_t>(capacity)));
  }
  static void operator delete(Elements* elements, std::destroying_delete_t) {
    const std::size_t size = sizeof(Elements) + elements->_capacity * sizeof(Element);
    if (!elements->_holders.none()) elements->destroyHolders();
    giveMemory(elements, size);
  }

  /// The place of the next element and its successors. Requires: `setSize` once they are made.
  [[nodiscard]] Element* place() { return first() + _size; }
  void setSize(const Element* end, Holders holders) {
    _size = static_cast<std::uint32_t>(end - first());
    _holders = holders;
  }

  [[nodiscard]] std::span<Element> all() { return {first(), _size}; }
  [[nodiscard]] std::size_t room() const { return _capacity - _size; }
  /// Requires: room.
  void append(Element&& element, bool plain) {
    if (!plain) _holders.add(_size);
    new (first() + _size++) Element(std::move(element));
  }
  void setHolder(std::size_t index) { _holders.add(index); }

  /// A copy that nobody else holds, with room for `more`.
  [[nodiscard]] Ref<Elements> copy(std::size_t more) const {
    auto made = create(_size + more);
    std::memcpy(static_cast<void*>(made->first()), first(), _size * sizeof(Element));
    // The bytes of an element are its copy once what it holds counts one more.
    _holders.each(_size, [this](std::size_t index) { first()[index].retain(); });
    made->setSize(made->first() + _size, _holders);
    made->marked = marked;
    return made;
  }

  /// Makes `elements` one block that nobody else holds and that has room for `more`.
  static Elements& own(Ref<Elements>& elements, std::size_t more) {
    if (elements && elements->references() == 1 && elements->room() >= more) return *elements;
    return made(elements, more);
  }

  bool marked = false;  // whatever its holder means by it

 private:
  explicit Elements(std::uint32_t capacity) : _capacity(capacity) {}
  [[nodiscard]] Element* first() { return reinterpret_cast<Element*>(this + 1); }
  [[nodiscard]] const Element* first() const { return reinterpret_cast<const Element*>(this + 1); }

  [[gnu::noinline]] void destroyHolders() {
    _holders.each(_size, [this](std::size_t index) { std::destroy_at(first() + index); });
  }

  [[gnu::noinline]] static Elements& made(Ref<Elements>& elements, std::size_t more) {
    constexpr std::size_t kLeast = 4;
    const std::size_t size = elements ? elements->_size : 0;
    if (!elements)
      elements = create(more == 0 ? 0 : std::max(more, kLeast));
    else if (elements->references() > 1)
      elements = elements->copy(more);
    else
      elements = elements->copy(std::max(more, size));
    return *elements;
  }

  std::uint32_t _size = 0;
  std::uint32_t _capacity;
  Holders _holders;
};

}  // namespace quorin
