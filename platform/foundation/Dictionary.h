#pragma once

#include <initializer_list>
#include <iterator>
#include <utility>

#include "platform/foundation/Elements.h"

namespace quorin {

/// An ordered list of values.
class List {
 public:
  List() = default;
  List(std::initializer_list<Value> values);

  [[nodiscard]] std::size_t size() const { return values().size(); }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] const Value& operator[](std::size_t index) const { return values()[index]; }
  [[nodiscard]] auto begin() const { return values().begin(); }
  [[nodiscard]] auto end() const { return values().end(); }
  /// Makes room for so many values in all.
  void reserve(std::size_t count);
  void append(Value value) {
    const bool plain = value.isPlain();
    Elements::own(_elements, 1, plain).append(std::move(value), plain);
  }

  /// The same dictionaries, changed by `change`: `all` of them as `DictionaryDrafts` where nothing
  /// but plain values is there and, as `plain` says, is put there, else `one` copy after the other.
  /// Copies under the keys `from` get the keys `to`, which begin with those, where these are given.
  /// Requires: a list, of dictionaries only.
  template <class Change>
  [[nodiscard]] static List changed(const Value& list, bool plain, Keys from, Keys to,
                                    Change&& change);

  friend bool operator==(const List& a, const List& b) {
    return std::ranges::equal(a.values(), b.values());
  }

 private:
  friend class Value;
  friend class ListMaker;
  explicit List(Ref<Elements> elements) : _elements(std::move(elements)) {}
  [[nodiscard]] std::span<const Value> values() const {
    return _elements ? _elements->all() : std::span<const Value>();
  }

  Ref<Elements> _elements;
};

/// One value of a dictionary under its key, both as long as the dictionary is not changed.
struct DictionaryEntry {
  Literal key;
  const Value& value;
};

/// Values under text keys: in the order of the keys of its kind, or in which they were first set.
class Dictionary {
 public:
  Dictionary() = default;
  Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals);
  explicit Dictionary(Ref<Elements> elements) : _elements(std::move(elements)) {}

  [[nodiscard]] std::size_t size() const { return _elements ? _elements->count() : 0; }
  [[nodiscard]] bool empty() const { return !_elements || _elements->empty(); }
  /// One a place, with a value or without.
  [[nodiscard]] Keys keys() const {
    return _elements ? Keys(_elements->keys(), _elements->size()) : Keys();
  }
  [[nodiscard]] auto begin() const { return Iterator(_elements.get(), 0); }
  [[nodiscard]] auto end() const { return Iterator(_elements.get(), places()); }
  /// One entry after the other is passed for it. Requires: index < size.
  [[nodiscard]] DictionaryEntry operator[](std::size_t index) const {
    return *std::next(begin(), static_cast<std::ptrdiff_t>(index));
  }

  /// The value under `key`, or null. A good guess of its place saves the search.
  [[nodiscard]] const Value* find(std::string_view key) const { return find(Literal{key}); }
  [[nodiscard]] [[gnu::always_inline]] const Value* find(const Literal& key,
                                                         std::size_t guess = 0) const {
    if (!_elements) return nullptr;
    if (isAt(*_elements, key, guess)) [[likely]]
      return _elements->at(guess);
    return _elements->at(search(*_elements, key));
  }
  /// Where the key's value stands or would stand: a place behind all others when its kind has no
  /// such key. Places ascend in the entries' order.
  [[nodiscard]] std::size_t placeOf(const Literal& key, std::size_t guess = 0) const {
    return _elements ? placeOf(*_elements, key, guess) : 0;
  }
  /// The value at the place, or null.
  [[nodiscard]] const Value* at(std::size_t place) const {
    return _elements ? _elements->at(place) : nullptr;
  }

  /// Replaces the value in its place, or adds it.
  void set(Literal key, Value value) { set(key, nullptr, std::move(value)); }
  void set(const Ref<String>& key, Value value) { set({key->text()}, key, std::move(value)); }
  /// Replaces the value at the place. Requires: a place of this dictionary.
  void setAt(std::size_t place, Value value) {
    Elements::own(_elements, 0, value.isPlain()).put(place, std::move(value));
  }
  /// Lets `make` change the value at the place, if there is one.
  template <class Make>
  void change(std::size_t place, Make make) {
    const Value* old = at(place);
    if (!old) return;
    Value value = *old;
    make(value);
    replace(old, std::move(value));
  }
  /// Replaces one of this dictionary's values.
  [[gnu::always_inline]] void replace(const Value* old, Value value) {
    const auto place = static_cast<std::size_t>(old - _elements->first());
    Elements::own(_elements, 0, value.isPlain()).replace(place, std::move(value));
  }
  /// Appends. Requires: no entry has this key.
  void append(Literal key, Value value) { append(key, nullptr, std::move(value)); }
  void append(const Ref<String>& key, Value value) { append({key->text()}, key, std::move(value)); }

  /// Null without memory.
  [[nodiscard]] const Elements* elements() const { return _elements.get(); }
  /// Whether these are other keys than its kind's, which end with the dictionary.
  [[nodiscard]] bool hasOwnKeys() const { return _elements && _elements->hasOwnKeys(); }

  /// Whether this is the platform's own dictionary behind a bridge, and not the program's.
  [[nodiscard]] bool isBridged() const { return _elements && _elements->isMarked(); }
  /// A copy that carries the bridge's mark.
  [[nodiscard]] Dictionary bridged() const;

  friend bool operator==(const Dictionary& a, const Dictionary& b);

 private:
  friend class Value;
  friend class DictionaryDrafts;
  friend class DictionaryMaker;

  class Iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = DictionaryEntry;
    using iterator_category = std::input_iterator_tag;
    using pointer = void;
    using reference = DictionaryEntry;

    Iterator(const Elements* elements, std::size_t place) : _elements(elements), _place(place) {
      skip();
    }
    DictionaryEntry operator*() const {
      return {_elements->keys()[_place], _elements->first()[_place]};
    }
    Iterator& operator++() {
      ++_place;
      skip();
      return *this;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    void skip() {
      while (_elements && _place < _elements->size() && !_elements->has(_place)) ++_place;
    }
    const Elements* _elements;
    std::size_t _place;
  };

  [[nodiscard]] static std::size_t placeOf(const Elements& elements, const Literal& key,
                                           std::size_t guess) {
    return isAt(elements, key, guess) ? guess : search(elements, key);
  }
  /// Whether the place's key is this text at the same address, where a `kKey` stands alone.
  [[nodiscard]] static bool isAt(const Elements& elements, const Literal& key, std::size_t place) {
    return place < elements.size() && elements.keys()[place].text.data() == key.text.data() &&
           (key.padded || elements.keys()[place].text.size() == key.text.size());
  }
  /// The place of the key, whether it has a value or not, or the size.
  [[nodiscard]] static std::size_t search(const Elements& elements, const Literal& key);
  [[nodiscard]] std::size_t places() const { return _elements ? _elements->size() : 0; }
  void set(Literal key, Ref<String> text, Value value);
  void append(Literal key, Ref<String> text, Value value);

  Ref<Elements> _elements;
};

/// The dictionaries of a list that is made in a block, before anyone holds it: of plain values, and
/// all under the same keys.
class DictionaryDrafts {
 public:
  explicit DictionaryDrafts(const Elements& list) : _list(list) {}

  [[nodiscard]] std::size_t placeOf(const Literal& key, std::size_t guess = 0) const {
    return Dictionary::placeOf(first(), key, guess);
  }
  /// Lets `make` change each value at the place to another plain one.
  template <class Make>
  void change(std::size_t place, Make make) const {
    if (place >= first().size()) return;
    for (const Value& value : _list.all()) {
      Elements& dictionary = draft(value);
      if (dictionary.has(place)) make(dictionary.first()[place]);
    }
  }
  /// Requires: the value is plain, and its key one of theirs.
  void set(const Literal& key, const Value& value) const {
    const std::size_t place = placeOf(key, first().size() - 1);
    for (const Value& dictionary : _list.all()) draft(dictionary).putPlain(place, value);
  }

 private:
  [[nodiscard]] static Elements& draft(const Value& value) {
    return const_cast<Elements&>(static_cast<const Elements&>(*value.held()));
  }
  [[nodiscard]] const Elements& first() const { return draft(_list.all()[0]); }

  const Elements& _list;
};

/// Makes a dictionary of the keys of its kind, or of the same as another's, place by place.
class DictionaryMaker {
 public:
  explicit DictionaryMaker(Keys keys) : _elements(Elements::create(keys)) {}
  explicit DictionaryMaker(const Dictionary& like)
      : _elements(like._elements && like._elements->hasOwnKeys() ? like._elements->copy(0)
                                                                 : Elements::create(like.keys())) {}

  [[gnu::always_inline]] void put(std::size_t place, const Value& value) {
    if (value.isPlain() && !_elements->has(place)) [[likely]]
      _elements->putPlain(place, value);
    else
      putAny(place, value);
  }
  [[nodiscard]] Dictionary made() { return Dictionary(std::move(_elements)); }

 private:
  [[gnu::noinline]] void putAny(std::size_t place, const Value& value) {
    _elements->put(place, Value(value));
  }

  Ref<Elements> _elements;
};

/// Makes a list whose largest size is known beforehand. Requires: room for what is appended.
class ListMaker {
 public:
  explicit ListMaker(std::size_t most) : _elements(Elements::create(most)) {}

  void append(Value value) {
    const bool plain = value.isPlain();
    _elements->append(std::move(value), plain);
  }
  [[nodiscard]] List made() { return List(std::move(_elements)); }

 private:
  Ref<Elements> _elements;
};

inline List Value::list() const { return List(Ref<Elements>(const_cast<Elements*>(elements()))); }
inline Value::Value(List&& list) : Value(Kind::list, list._elements.take(), nullptr) {}
inline Value::Value(Dictionary&& dictionary)
    : Value(Kind::dictionary, dictionary._elements.take(), nullptr) {}

template <class Change>
List List::changed(const Value& list, bool plain, Keys from, Keys to, Change&& change) {
  const Elements* const elements = list.elements();
  if (!elements || elements->size() == 0) return {};
  const Elements* const first = elements->first()->elements();
  if (plain && first && !first->hasOwnKeys() && (to.empty() || first->keys() == from.data())) {
    const std::size_t size = elements->size();
    const Keys keys = to.empty() ? Keys(first->keys(), first->size()) : to;
    Block block(Elements::bytes(size) + size * Elements::bytes(keys.size()));
    if (Elements* copies = elements->copyDictionariesIn(block, keys)) {
      change.all(DictionaryDrafts(*copies));
      return List(Ref<Elements>::owning(copies->becomeWhole(block)));
    }
  }
  ListMaker made(elements->size());
  for (const Value& value : elements->all()) {
    Dictionary copy = value.dictionary();
    change.one(copy);
    made.append(Value(std::move(copy)));
  }
  return made.made();
}

/// Printed forms: "[key: value, key: value]", "[:]" when empty; "[a, b]"; bytes "<0aff>"; booleans
/// 1 and 0; text as it is, with U+FFFD where it is not UTF-8; floating-point numbers as the
/// shortest text that reads back, always with a decimal.
void appendPrinted(std::string& out, const Value& value);
void appendPrinted(std::string& out, const List& list);
void appendPrinted(std::string& out, const Dictionary& dictionary);
void appendPrinted(std::string& out, float value);
void appendPrinted(std::string& out, double value);

/// The text, a space and the printed dictionary, until the thread prints again.
[[nodiscard]] std::string_view printedBehind(std::string_view before, const Dictionary& dictionary);

template <class T>
[[nodiscard]] std::string printed(const T& value) {
  std::string out;
  appendPrinted(out, value);
  return out;
}

/// Appends the text with U+FFFD in place of each maximal part that is not UTF-8.
void appendUtf8(std::string& out, std::string_view text);

}  // namespace quorin
