#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "platform/foundation/Value.h"

namespace quorin {

/// Places of a block of values: one bit each, the last for all from there on.
class Places {
 public:
  void add(std::size_t place) { _bits |= std::uint64_t{1} << std::min(place, kLast); }
  /// Of one bit each, the last for the last alone.
  [[nodiscard]] static Places of(std::uint64_t bits) {
    Places places;
    places._bits = bits;
    return places;
  }
  [[nodiscard]] static Places below(std::size_t size) {
    return of(size > kLast ? ~std::uint64_t{0} : (std::uint64_t{1} << size) - 1);
  }
  [[nodiscard]] bool none() const { return _bits == 0; }
  /// Whether it is one place alone, before the last. Then it is `first`. Requires: not none.
  [[nodiscard]] bool isOne() const { return (_bits & (_bits - 1)) == 0 && _bits >> kLast == 0; }
  [[nodiscard]] std::size_t first() const {
    return static_cast<std::size_t>(std::countr_zero(_bits));
  }
  friend Places operator|(Places a, Places b) {
    a._bits |= b._bits;
    return a;
  }

  /// Visits the places below `size`, ascending.
  template <class Visit>
  void each(std::size_t size, Visit visit) const {
    for (std::uint64_t rest = _bits; rest != 0; rest &= rest - 1) {
      auto place = static_cast<std::size_t>(std::countr_zero(rest));
      if (place < kLast)
        visit(place);
      else
        for (; place < size; ++place) visit(place);
    }
  }

 private:
  static constexpr std::size_t kLast = 63;
  std::uint64_t _bits = 0;
};

/// The keys of one dictionary that has other ones than its kind.
struct OwnKeys final : Object {
  std::vector<Literal> all;
  std::vector<Ref<String>> texts;  // those of them that do not live as long as the program
};

/// What lists and dictionaries share when they are copied: values in one block of memory, behind
/// the object; a dictionary's beside the keys of its kind, a bit for each place where a value
/// stands. Only values that hold an object are destroyed and counted one by one. A whole one may
/// also have what its values hold in that memory: such parts are not counted, and hold nothing that
/// lies elsewhere.
class Elements final : public Part {
 public:
  static Ref<Elements> create(std::size_t capacity) {
    auto made = Ref<Elements>(new (takeMemory(bytes(capacity))) Elements(bytes(capacity)));
    made->_capacity = static_cast<std::uint32_t>(capacity);
    return made;
  }
  /// A place for each key, and no value yet.
  static Ref<Elements> create(Keys keys) {
    auto made = create(keys.size());
    made->setKeys(keys);
    return made;
  }
  /// Each in a block; null where it has no room.
  [[nodiscard]] [[gnu::always_inline]] static Elements* createIn(Block& block,
                                                                 std::size_t capacity) {
    void* memory = block.take(bytes(capacity));
    if (!memory) return nullptr;
    auto* made = new (memory) Elements(block);
    made->_capacity = static_cast<std::uint32_t>(capacity);
    return made;
  }
  [[nodiscard]] [[gnu::always_inline]] static Elements* createIn(Block& block, Keys keys) {
    void* memory = block.take(bytes(keys.size()));
    return memory ? new (memory) Elements(block, keys, 0, {}) : nullptr;
  }
  /// In the block's memory: a dictionary with a place for each key, whose values were made before
  /// at the places that are `present`, and of these `inside` hold what lies in the block.
  [[gnu::always_inline]] Elements(const Block& block, Keys keys, std::uint64_t present,
                                  Places inside)
      : Part(block.first()),
        _size(static_cast<std::uint32_t>(keys.size())),
        _capacity(_size),
        _keys(keys.data()),
        _holders(inside),
        _present(present) {}
  static void* operator new(std::size_t /*size*/, void* memory) { return memory; }
  /// Takes over the block's memory, and gives a reference to the caller. Requires: these lie first
  /// in it.
  [[gnu::always_inline]] Elements* becomeWhole(Block& block) {
    new (&_whole) Whole{{}, nullptr, static_cast<std::uint32_t>(block.size()), 0};
    block.handOver();
    Object::retain();
    return this;
  }
  [[nodiscard]] static constexpr std::size_t bytes(std::size_t capacity) {
    return sizeof(Elements) + capacity * sizeof(Value);
  }
  static void operator delete(Elements* elements, std::destroying_delete_t) {
    const Places counting = elements->_whole.counting;
    if (!counting.none()) {
      if (counting.isOne()) [[likely]]
        elements->endCounting(counting.first());
      else
        elements->endCounting();
    }
    if (elements->_whole.ownKeys) [[unlikely]]
      elements->_whole.ownKeys->release();
    giveMemory(elements, elements->_whole.memory);
  }

  /// The same as a part's: what it lies in is of this class.
  void release() const {
    const auto& counted = static_cast<const Elements&>(whole());
    if (counted.dropReference()) delete &counted;
  }

  /// The first place. Requires: `setPresent`, or `endAt`, once the values are made.
  [[nodiscard]] Value* first() { return reinterpret_cast<Value*>(this + 1); }
  [[nodiscard]] static Value* firstIn(void* memory) {
    return reinterpret_cast<Value*>(static_cast<Elements*>(memory) + 1);
  }
  [[nodiscard]] const Value* first() const { return reinterpret_cast<const Value*>(this + 1); }
  /// Says at which places of its kind's there are values, which of them hold what lies in the same
  /// memory, and which what lies elsewhere. Requires: whole.
  void setPresent(std::uint64_t present, Places inside, Places counting) {
    _present = present;
    _holders = inside | counting;
    _whole.counting = counting;
  }
  /// Says that so many values were made, each of which holds what lies in the same memory.
  void setInside(std::size_t size) {
    _size = static_cast<std::uint32_t>(size);
    _holders = Places::below(size);
  }
  /// A list's values end here: what was taken of the block behind them goes back. None of them
  /// holds an object.
  void endAt(const Value* end, Block& block) {
    _size = _capacity = static_cast<std::uint32_t>(end - first());
    block.cut(end);
  }

  [[nodiscard]] std::span<const Value> all() const { return {first(), _size}; }
  /// The same where as many values were made as there is room for, but not said so.
  [[nodiscard]] std::span<const Value> full() const { return {first(), _capacity}; }
  /// How many places there are, with and without a value.
  [[nodiscard]] std::size_t size() const { return _size; }
  [[nodiscard]] std::size_t room() const { return _capacity - _size; }
  [[nodiscard]] bool has(std::size_t place) const {
    return place >= kMostKeys || (_present >> place & 1) != 0;
  }
  /// The same for the first places, a bit each, the last for all from there on.
  [[nodiscard]] std::int64_t present() const { return static_cast<std::int64_t>(_present); }
  /// The value at the place, or null.
  [[nodiscard]] const Value* at(std::size_t place) const {
    return place < _size && has(place) ? &first()[place] : nullptr;
  }
  [[nodiscard]] bool empty() const {
    return _size < kMostKeys ? _present << (kMostKeys - _size) == 0 || _size == 0 : count() == 0;
  }
  /// How many of the places have a value.
  [[nodiscard]] std::size_t count() const {
    const std::uint64_t low =
        _size < kMostKeys ? (std::uint64_t{1} << _size) - 1 : ~std::uint64_t{0};
    return _size - static_cast<std::size_t>(std::popcount(~_present & low));
  }
  /// A dictionary's, one a place.
  [[nodiscard]] const Literal* keys() const { return _keys; }
  [[nodiscard]] bool hasOwnKeys() const { return isWhole() && _whole.ownKeys; }
  /// Whether no value holds an object.
  [[nodiscard]] bool isPlain() const { return _holders.none(); }

  /// Requires: room.
  void append(Value&& value, bool plain) {
    if (!plain) setCounting(_size);
    new (first() + _size++) Value(std::move(value));
  }
  /// The same for one that holds what lies in the same memory.
  void appendInside(Value&& value) {
    _holders.add(_size);
    new (first() + _size++) Value(std::move(value));
  }
  /// Puts the value in its place, whatever was there. Requires: where the value is not plain, that
  /// these are whole.
  [[gnu::always_inline]] void put(std::size_t place, Value&& value) {
    Value& old = first()[place];
    if (has(place) && !old.isPlain()) [[unlikely]]
      endOld(place);
    if (!value.isPlain()) setCounting(place);
    if (place < kMostKeys) _present |= std::uint64_t{1} << place;
    new (&old) Value(std::move(value));
  }

  /// The same where there is a value.
  [[gnu::always_inline]] void replace(std::size_t place, Value&& value) {
    Value& old = first()[place];
    if (!old.isPlain()) [[unlikely]]
      endOld(place);
    if (!value.isPlain()) setCounting(place);
    new (&old) Value(std::move(value));
  }
  /// The same where both are plain.
  void putPlain(std::size_t place, const Value& value) {
    if (place < kMostKeys) _present |= std::uint64_t{1} << place;
    first()[place].become(value);
  }

  /// A copy that nobody else holds, with room for `more`.
  [[nodiscard]] Ref<Elements> copy(std::size_t more) const;
  /// A copy of a list in a block, and of its dictionaries, under `keys` that begin with theirs.
  /// Null unless all of them are plain and have the same keys, no own ones. Requires: room for all.
  [[nodiscard]] Elements* copyDictionariesIn(Block& block, Keys keys) const;

  /// Makes `elements` one that nobody else holds and that has room for `more`, and where something
  /// that is not plain may be put.
  [[gnu::always_inline]] static Elements& own(Ref<Elements>& elements, std::size_t more,
                                              bool plain) {
    if (elements && (plain || elements->isWhole()) && elements->references() == 1 &&
        elements->room() >= more) [[likely]]
      return *elements;
    return made(elements, more);
  }
  /// The same of a dictionary, with its own keys and room for one more.
  static Elements& ownWithKeys(Ref<Elements>& elements, bool plain);
  /// Appends under a key of its own. Requires: its own keys, and room.
  void append(Literal key, Ref<String> text, Value&& value, bool plain);

  /// A flag, whatever its holder means by it.
  [[nodiscard]] bool isMarked() const { return isWhole() && _whole.marked != 0; }
  /// Requires: whole.
  void mark() { _whole.marked = 1; }

 private:
  static constexpr std::size_t kMostKeys = 64;

  explicit Elements(std::size_t memory)
      : _whole{{}, nullptr, static_cast<std::uint32_t>(memory), 0} {}
  explicit Elements(const Block& block) : Part(block.first()) {}

  void setKeys(Keys keys) {
    _keys = keys.data();
    _size = static_cast<std::uint32_t>(keys.size());
    _present = 0;
  }
  void setCounting(std::size_t place) {
    _holders.add(place);
    _whole.counting.add(place);
  }
  /// Whether the object, which a value holds, lies in the same memory.
  [[nodiscard]] bool contains(const void* object) const { return !isWhole() || isInMemory(object); }
  [[nodiscard]] bool isInMemory(const void* object) const {
    return reinterpret_cast<std::uintptr_t>(object) - reinterpret_cast<std::uintptr_t>(this) <
           _whole.memory;
  }
  void endAt(std::size_t place) {
    first()[place].end([this](const void* object) { return contains(object); });
  }
  [[gnu::noinline]] void endOld(std::size_t place) { endAt(place); }
  /// Both require: whole.
  void endCounting(std::size_t place) {
    const Value& value = first()[place];
    if (!value.isPlain() && !isInMemory(value.held())) value.held()->release();
  }
  [[gnu::noinline]] void endCounting() {
    _whole.counting.each(_size, [this](std::size_t place) { endCounting(place); });
  }
  [[gnu::noinline]] static Elements& made(Ref<Elements>& elements, std::size_t more);

  std::uint32_t _size = 0;
  std::uint32_t _capacity = 0;
  const Literal* _keys = nullptr;
  Places _holders;
  std::uint64_t _present = ~std::uint64_t{0};
  /// What only a whole one has. In a union, so that a part, of which there are many, sets none of
  /// it.
  struct Whole {
    Places counting;  // of the holders those that may count it: elsewhere it lies
    OwnKeys* ownKeys = nullptr;
    std::uint32_t memory = 0;  // bytes that begin here
    std::uint32_t marked = 0;  // a flag of four bytes: meant
  };
  union {
    Whole _whole;
  };
};

inline const Elements* Value::elements() const { return static_cast<const Elements*>(counted()); }
inline Value Value::inside(Kind listOrDictionary, const Elements* elements) {
  return uncounted(listOrDictionary, elements);
}

}  // namespace quorin
