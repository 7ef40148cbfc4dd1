#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

#include "platform/foundation/Block.h"
#include "platform/foundation/Object.h"

namespace quorin {

/// Which elements of a block hold an object: one bit each, the last for all from there on.
class Holders {
 public:
  void add(std::size_t index) { _bits |= std::uint64_t{1} << std::min(index, kLast); }
  [[nodiscard]] bool none() const { return _bits == 0; }
  friend Holders operator|(Holders a, Holders b) {
    a._bits |= b._bits;
    return a;
  }

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
/// A whole one may also have what its elements hold in that memory: such parts are not counted,
/// and hold nothing that lies elsewhere.
template <class Element>
class Elements final : public Part {
 public:
  static Ref<Elements> create(std::size_t capacity) {
    const std::size_t size = bytes(capacity);
    return Ref<Elements>(new (takeMemory(size)) Elements(capacity, size));
  }
  /// Null where the block has no room.
  [[nodiscard]] [[gnu::always_inline]] static Elements* createIn(Block& block,
                                                                 std::size_t capacity) {
    void* memory = block.take(bytes(capacity));
    return memory ? new (memory) Elements(capacity, block) : nullptr;
  }
  /// What lies first in the block, with the block's memory. Requires: it is one of these.
  [[nodiscard]] static Ref<Elements> whole(Block& block) {
    return Ref<Elements>(static_cast<Elements*>(block.handOver()));
  }
  [[nodiscard]] static constexpr std::size_t bytes(std::size_t capacity) {
    return sizeof(Elements) + capacity * sizeof(Element);
  }
  static void operator delete(Elements* elements, std::destroying_delete_t) {
    if (!elements->_counting.none()) elements->endCounting();
    giveMemory(elements, elements->_memory);
  }

  /// The place of the first element and its successors. Requires: `setSize` once they are made.
  [[nodiscard]] Element* place() { return first(); }
  /// Says which hold what lies in the same memory, and which of a whole one what lies elsewhere.
  void setSize(const Element* end, Holders inside, Holders counting) {
    _size = static_cast<std::uint32_t>(end - first());
    _holders = inside | counting;
    _counting = counting;
  }

  /// The same where what was taken of the block behind the last element goes back, and no element
  /// holds an object.
  void endAt(const Element* end, Block& block) {
    setSize(end, {}, {});
    _capacity = _size;
    block.cut(end);
  }

  [[nodiscard]] std::span<Element> all() { return {first(), _size}; }
  [[nodiscard]] std::span<const Element> all() const { return {first(), _size}; }
  [[nodiscard]] std::size_t size() const { return _size; }
  [[nodiscard]] std::size_t room() const { return _capacity - _size; }
  /// Whether no element holds an object.
  [[nodiscard]] bool isPlain() const { return _holders.none(); }
  /// Requires: room.
  void append(Element&& element, bool plain) {
    if (!plain) setCounting(_size);
    new (first() + _size++) Element(std::move(element));
  }
  /// The same for one that holds what lies in the same memory.
  void appendInside(Element&& element) {
    _holders.add(_size);
    new (first() + _size++) Element(std::move(element));
  }
  void setCounting(std::size_t index) {
    _holders.add(index);
    _counting.add(index);
  }

  /// A copy that nobody else holds, with room for `more`.
  [[nodiscard]] Ref<Elements> copy(std::size_t more) const {
    auto made = create(_size + more);
    copyTo(*made);
    made->_counting = _holders;
    // The bytes of an element are its copy once what it holds counts one more.
    _holders.each(_size, [this](std::size_t index) { first()[index].retain(); });
    made->marked = marked;
    return made;
  }
  /// The same in a block; null where it has no room. Requires: plain.
  [[nodiscard]] Elements* copyIn(Block& block, std::size_t more) const {
    Elements* made = createIn(block, _size + more);
    if (made) copyTo(*made);
    return made;
  }

  /// Makes `elements` one that nobody else holds and that has room for `more`, and where something
  /// that is not plain may be put.
  static Elements& own(Ref<Elements>& elements, std::size_t more, bool plain) {
    if (elements && elements->references() == 1 && elements->room() >= more &&
        (plain || elements->isWhole()))
      return *elements;
    return made(elements, more);
  }

  /// Whether the object, which an element holds, lies in the same memory.
  [[nodiscard]] bool contains(const void* object) const {
    return !isWhole() ||
           reinterpret_cast<std::uintptr_t>(object) - reinterpret_cast<std::uintptr_t>(this) <
               _memory;
  }

  bool marked = false;  // whatever its holder means by it

 private:
  Elements(std::size_t capacity, std::size_t memory)
      : _capacity(static_cast<std::uint32_t>(capacity)),
        _memory(static_cast<std::uint32_t>(memory)) {}
  Elements(std::size_t capacity, const Block& block)
      : Part(block.first()),
        _capacity(static_cast<std::uint32_t>(capacity)),
        _memory(static_cast<std::uint32_t>(block.size())) {}
  [[nodiscard]] Element* first() { return reinterpret_cast<Element*>(this + 1); }
  [[nodiscard]] const Element* first() const { return reinterpret_cast<const Element*>(this + 1); }

  void copyTo(Elements& other) const {
    std::memcpy(static_cast<void*>(other.first()), first(), _size * sizeof(Element));
    other._size = _size;
    other._holders = _holders;
  }

  [[gnu::noinline]] void endCounting() {
    _counting.each(_size, [this](std::size_t index) {
      first()[index].end([this](const void* object) { return contains(object); });
    });
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
  Holders _counting;      // those of them that may count it: elsewhere it lies
  std::uint32_t _memory;  // bytes that begin here; of a part: that it lies in
};

}  // namespace quorin
