#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Data.h"
#include "platform/foundation/Elements.h"

namespace quorin {

class Dictionary;
class List;

/// Text that lives as long as the program, for keys and names from tables.
struct Literal {
  std::string_view text;
  bool padded = false;  // whole steps of `kPaddedStep` bytes may be read
};

/// How much of a padded text is copied at once.
inline constexpr std::size_t kPaddedStep = 32;

/// A text as a template's argument.
template <std::size_t size>
struct FixedText {
  char text[size]{};

  consteval FixedText(const char (&literal)[size + 1]) { std::copy_n(literal, size, text); }
  consteval explicit FixedText(std::string_view literal) {
    std::copy_n(literal.data(), size, text);
  }
};
template <std::size_t size>
FixedText(const char (&literal)[size]) -> FixedText<size - 1>;

template <FixedText text>
inline constexpr auto kPaddedText = [] {
  std::array<char, (sizeof text.text + kPaddedStep - 1) / kPaddedStep * kPaddedStep> padded{};
  std::ranges::copy(text.text, padded.begin());
  return padded;
}();

/// The text that stands once in the program: two equal keys are one address.
template <FixedText text>
inline constexpr Literal kKey{{kPaddedText<text>.data(), sizeof text.text}, true};

/// One value of a dictionary: a number, text, bytes, a list or a dictionary; or nothing.
/// Copies share what they hold, and nothing shared is ever changed in place.
class Value {
 public:
  enum class Kind : std::uint8_t {
    nothing,
    boolean,
    int32,
    uint32,
    int64,
    uint64,
    float32,
    float64,
    text,
    data,
    list,
    dictionary
  };

  Value() = default;
  explicit Value(bool value) : _head(head(Kind::boolean)) { _as.natural = value ? 1 : 0; }
  explicit Value(std::int32_t value) : _head(head(Kind::int32)) { _as.integer = value; }
  explicit Value(std::uint32_t value) : _head(head(Kind::uint32)) { _as.integer = value; }
  explicit Value(std::int64_t value) : _head(head(Kind::int64)) { _as.integer = value; }
  explicit Value(std::uint64_t value) : _head(head(Kind::uint64)) { _as.natural = value; }
  explicit Value(float value) : _head(head(Kind::float32)) { _as.float32 = value; }
  explicit Value(double value) : _head(head(Kind::float64)) { _as.float64 = value; }
  explicit Value(Literal literal)
      : _head(head(Kind::text) | (literal.padded ? kPadded : 0) |
              std::uint64_t{static_cast<std::uint32_t>(literal.text.size())} << kLengthShift) {
    _as.literal = literal.text.data();
  }
  explicit Value(const std::string& text) : Value(make<String>(text)) {}
  explicit Value(const Ref<String>& text) : Value(Kind::text, text.get()) {}
  explicit Value(const Ref<Data>& data) : Value(Kind::data, data.get()) {}
  explicit Value(const List& list);
  explicit Value(List&& list);
  explicit Value(const Dictionary& dictionary);
  explicit Value(Dictionary&& dictionary);
  explicit Value(const void*) = delete;  // keeps a pointer from passing for a boolean

  Value(const Value& other) : _head(other._head), _as(other._as) {
    if (const Part* part = counted()) part->retain();
  }
  Value(Value&& other) noexcept : _head(std::exchange(other._head, 0)), _as(other._as) {}
  Value& operator=(Value other) noexcept {
    std::swap(_head, other._head);
    std::swap(_as, other._as);
    return *this;
  }
  ~Value() {
    if (const Part* part = counted()) part->release();
  }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(_head & 0xff); }
  [[nodiscard]] bool isInteger() const { return kind() >= Kind::int32 && kind() <= Kind::uint64; }

  /// The integer as a signed 64-bit number; empty for other kinds and beyond its range.
  [[nodiscard]] std::optional<std::int64_t> integer() const {
    if (!isInteger() || (kind() == Kind::uint64 && _as.integer < 0)) return std::nullopt;
    return _as.integer;
  }
  /// The number, of any numeric kind; empty for other kinds.
  [[nodiscard]] std::optional<double> number() const;

  /// Each requires its kind.
  [[nodiscard]] bool boolean() const { return _as.natural != 0; }
  [[nodiscard]] std::uint64_t natural() const { return _as.natural; }
  [[nodiscard]] float float32() const { return _as.float32; }
  [[nodiscard]] double float64() const { return _as.float64; }
  [[nodiscard]] std::string_view text() const {
    return isPlain() ? std::string_view(_as.literal, _head >> kLengthShift)
                     : static_cast<const String*>(_as.part)->text();
  }
  [[nodiscard]] Ref<Data> data() const;
  [[nodiscard]] List list() const;
  [[nodiscard]] Dictionary dictionary() const;

  /// Whether it is a number, or text that lives as long as the program.
  [[nodiscard]] bool isPlain() const { return (_head & kCounted) == 0; }
  /// For a copy of this value's bytes, made where no constructor may run.
  void retain() const {
    if (const Part* part = counted()) part->retain();
  }
  /// The destructor, of a value which does not count an object that is near.
  template <class IsNear>
  void end(IsNear isNear) {
    if (const Part* part = counted(); part && !isNear(part)) part->release();
  }
  /// What lies in one block with this value, and is not counted.
  [[nodiscard]] static Value inside(const String* text) { return uncounted(Kind::text, text); }
  [[nodiscard]] static Value inside(const Data* data) { return uncounted(Kind::data, data); }
  [[nodiscard]] static Value inside(const Elements<Value>* list) {
    return uncounted(Kind::list, list);
  }
  [[nodiscard]] static Value inside(const Elements<struct DictionaryEntry>* dictionary) {
    return uncounted(Kind::dictionary, dictionary);
  }
  /// Whether the text may be read in whole steps of `kPaddedStep`.
  [[nodiscard]] bool isPadded() const { return (_head & kPadded) != 0; }

  /// Same kind of value and same content; integers compare by their number, whatever their width.
  friend bool operator==(const Value& a, const Value& b);

 private:
  friend class Dictionary;
  friend class List;

  // A value is two words: what it is, and its content. One store makes each.
  static constexpr std::uint64_t kCounted = 1 << 8;  // it holds an object
  static constexpr std::uint64_t kPadded = 1 << 9;   // of a literal
  static constexpr unsigned kLengthShift = 32;       // of a literal
  [[nodiscard]] static constexpr std::uint64_t head(Kind kind) {
    return static_cast<std::uint64_t>(kind);
  }

  /// Takes over a reference. No object is nothing, except for a list or dictionary without memory.
  Value(Kind kind, const Part* part, std::nullptr_t /*taken over*/)
      : _head(part                                             ? head(kind) | kCounted
              : kind == Kind::list || kind == Kind::dictionary ? head(kind)
                                                               : 0) {
    _as.part = part;
  }
  Value(Kind kind, const Part* part) : Value(kind, part, nullptr) {
    if (part) part->retain();
  }
  [[nodiscard]] static Value uncounted(Kind kind, const Part* part) {
    Value value;
    value._head = head(kind) | kCounted;
    value._as.part = part;
    return value;
  }

  [[nodiscard]] const Part* counted() const { return isPlain() ? nullptr : _as.part; }

  std::uint64_t _head = 0;
  union {
    std::int64_t integer;
    std::uint64_t natural;
    float float32;
    double float64;
    const char* literal;
    const Part* part;
  } _as{};
};

/// An ordered list of values.
class List {
 public:
  List() = default;
  List(std::initializer_list<Value> values);
  /// Takes over the block's memory. Requires: a list's elements lie first in it.
  explicit List(Block& block) : _storage(Storage::whole(block)) {}

  [[nodiscard]] std::size_t size() const { return values().size(); }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] const Value& operator[](std::size_t index) const { return values()[index]; }
  [[nodiscard]] auto begin() const { return values().begin(); }
  [[nodiscard]] auto end() const { return values().end(); }
  /// Makes room for so many values in all.
  void reserve(std::size_t count);
  void append(Value value) {
    const bool plain = value.isPlain();
    Storage::own(_storage, 1, plain).append(std::move(value), plain);
  }

  /// The same dictionaries, with `change` made to a copy of each: of a `Dictionary`, or of a
  /// `DictionaryDraft` where nothing but plain values is there and, as `plain` says, is put there.
  /// It may append `more` entries. Requires: the list has dictionaries only.
  template <class Change>
  [[nodiscard]] List changed(std::size_t more, bool plain, Change change) const;

  friend bool operator==(const List& a, const List& b) {
    return std::ranges::equal(a.values(), b.values());
  }

 private:
  friend class Value;
  template <class, class>
  friend class Maker;
  using Storage = Elements<Value>;
  explicit List(Ref<Storage> storage) : _storage(std::move(storage)) {}
  [[nodiscard]] std::span<const Value> values() const {
    return _storage ? _storage->all() : std::span<const Value>();
  }

  Ref<Storage> _storage;
};

/// One value of a dictionary under its key.
struct DictionaryEntry {
  Value key;  // text
  Value value;
  void retain() const {
    key.retain();
    value.retain();
  }
  template <class IsNear>
  void end(IsNear isNear) {
    key.end(isNear);
    value.end(isNear);
  }
  friend bool operator==(const DictionaryEntry&, const DictionaryEntry&) = default;
};

/// Values under text keys, in the order in which the keys were first set.
class Dictionary {
 public:
  using Entry = DictionaryEntry;

  Dictionary() = default;
  Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals);
  /// Takes over the block's memory. Requires: a dictionary's entries lie first in it.
  explicit Dictionary(Block& block) : _storage(Storage::whole(block)) {}
  explicit Dictionary(Ref<Elements<Entry>> entries) : _storage(std::move(entries)) {}

  [[nodiscard]] std::size_t size() const { return entries().size(); }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] auto begin() const { return entries().begin(); }
  [[nodiscard]] auto end() const { return entries().end(); }
  [[nodiscard]] const Entry& operator[](std::size_t index) const { return entries()[index]; }

  /// The value under `key`, or null. A good guess, where it may stand, saves the search.
  [[nodiscard]] const Value* find(std::string_view key) const { return find(Literal{key}); }
  [[nodiscard]] const Value* find(Literal key, std::size_t guess = 0) const {
    const std::size_t index = indexOf(key, guess);
    return index == size() ? nullptr : &entries()[index].value;
  }
  /// The same, for a key that mostly stands near the end.
  [[nodiscard]] const Value* findFromEnd(Literal key) const {
    const auto all = entries();
    for (std::size_t i = all.size(); i-- > 0;)
      if (isAt(all[i], key.text)) return &all[i].value;
    return find(key);
  }
  /// The place of `key`, or the size.
  [[nodiscard]] std::size_t indexOf(Literal key, std::size_t guess = 0) const {
    return indexOf(entries(), key, guess);
  }
  [[nodiscard]] static std::size_t indexOf(std::span<const Entry> all, Literal key,
                                           std::size_t guess) {
    return guess < all.size() && isAt(all[guess], key.text) ? guess : search(all, key);
  }

  /// Makes room for so many entries in all.
  void reserve(std::size_t count);
  /// Replaces the value in its place, or appends it.
  void set(Value key, Value value);
  void set(Literal key, Value value) { set(Value(key), std::move(value)); }
  /// Replaces the value at the place. Requires: index < size.
  void setAt(std::size_t index, Value value) {
    Storage& own = Storage::own(_storage, 0, value.isPlain());
    if (!value.isPlain()) own.setCounting(index);
    Value& place = own.all()[index].value;
    if (!place.isPlain()) place.end([&own](const void* object) { return own.contains(object); });
    new (&place) Value(std::move(value));
  }
  /// Appends. Requires: no entry has this key.
  void append(Value key, Value value) {
    const bool plain = key.isPlain() && value.isPlain();
    Storage::own(_storage, 1, plain).append({std::move(key), std::move(value)}, plain);
  }
  void append(Literal key, Value value) { append(Value(key), std::move(value)); }

  /// Whether this is the platform's own dictionary behind a bridge, and not the program's.
  [[nodiscard]] bool isBridged() const { return _storage && _storage->marked; }
  /// A copy that carries the bridge's mark.
  [[nodiscard]] Dictionary bridged() const;

  friend bool operator==(const Dictionary& a, const Dictionary& b) {
    return std::ranges::equal(a.entries(), b.entries());
  }

 private:
  friend class Value;
  template <class, class>
  friend class Maker;
  using Storage = Elements<Entry>;
  /// Whether the entry's key is this text at the same address.
  [[nodiscard]] static bool isAt(const Entry& entry, std::string_view key) {
    const std::string_view text = entry.key.text();
    return text.data() == key.data() && text.size() == key.size();
  }
  [[nodiscard]] static std::size_t search(std::span<const Entry> all, Literal key);
  [[nodiscard]] std::span<const Entry> entries() const {
    return _storage ? _storage->all() : std::span<const Entry>();
  }

  Ref<Storage> _storage;
};

/// A dictionary of plain values that is made in a block, before anyone holds it.
class DictionaryDraft {
 public:
  explicit DictionaryDraft(Elements<DictionaryEntry>* entries) : _entries(entries) {}

  [[nodiscard]] std::size_t size() const { return _entries->size(); }
  [[nodiscard]] const DictionaryEntry& operator[](std::size_t index) const {
    return _entries->all()[index];
  }
  [[nodiscard]] std::size_t indexOf(Literal key, std::size_t guess = 0) const {
    return Dictionary::indexOf(_entries->all(), key, guess);
  }
  /// Each requires: the value is plain.
  void setAt(std::size_t index, Value value) {
    new (&_entries->all()[index].value) Value(std::move(value));
  }
  void set(Literal key, Value value) {
    const std::size_t index = indexOf(key);
    if (index == size())
      _entries->append({Value(key), std::move(value)}, true);
    else
      setAt(index, std::move(value));
  }
  [[nodiscard]] Elements<DictionaryEntry>* entries() const { return _entries; }

 private:
  Elements<DictionaryEntry>* _entries;
};

/// Makes a list or dictionary whose largest size is known beforehand. Requires: room for what is
/// appended, and of a dictionary no key twice.
template <class Collection, class Element>
class Maker {
 public:
  explicit Maker(std::size_t most) : _storage(Elements<Element>::create(most)) {}

  template <class... Parts>
  void append(Parts&&... parts) {
    const bool plain = (parts.isPlain() && ...);
    _storage->append(Element{std::forward<Parts>(parts)...}, plain);
  }
  [[nodiscard]] Collection made() { return Collection(std::move(_storage)); }

 private:
  Ref<Elements<Element>> _storage;
};
using ListMaker = Maker<List, Value>;
using DictionaryMaker = Maker<Dictionary, DictionaryEntry>;

inline Value::Value(List&& list) : Value(Kind::list, list._storage.take(), nullptr) {}
inline Value::Value(Dictionary&& dictionary)
    : Value(Kind::dictionary, dictionary._storage.take(), nullptr) {}

template <class Change>
List List::changed(std::size_t more, bool plain, Change change) const {
  using Entries = Elements<DictionaryEntry>;
  const auto entriesOf = [](const Value& value) {
    return static_cast<const Entries*>(value.counted());
  };
  std::size_t memory = Storage::bytes(size());
  for (const Value& value : *this) {
    const Entries* entries = entriesOf(value);
    if (!entries || !entries->isPlain()) plain = false;
    if (!plain) break;
    memory += Entries::bytes(entries->size() + more);
  }
  if (plain) {
    Block block(memory);
    Storage* list = Storage::createIn(block, size());
    for (const Value& value : *this) {
      DictionaryDraft copy(entriesOf(value)->copyIn(block, more));
      change(copy);
      list->appendInside(Value::inside(copy.entries()));
    }
    return List(block);
  }
  ListMaker list(size());
  for (const Value& value : *this) {
    Dictionary copy = value.dictionary();
    change(copy);
    list.append(Value(std::move(copy)));
  }
  return list.made();
}

/// Printed forms: "[key: value, key: value]", "[:]" when empty; "[a, b]"; bytes "<0aff>"; booleans
/// 1 and 0; text as it is, with U+FFFD where it is not UTF-8; floating-point numbers as the
/// shortest text that reads back, always with a decimal.
void appendPrinted(std::string& out, const Value& value);
void appendPrinted(std::string& out, const List& list);
void appendPrinted(std::string& out, const Dictionary& dictionary);
void appendPrinted(std::string& out, float value);
void appendPrinted(std::string& out, double value);

template <class T>
[[nodiscard]] std::string printed(const T& value) {
  std::string out;
  appendPrinted(out, value);
  return out;
}

/// Appends the text with U+FFFD in place of each maximal part that is not UTF-8.
void appendUtf8(std::string& out, std::string_view text);

}  // namespace quorin
