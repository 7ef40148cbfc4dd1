#include "platform/foundation/Value.h"

#include <limits>

namespace quorin {

namespace {

template <class T>
T* objectAs(const Part* part) {
  return const_cast<T*>(static_cast<const T*>(part));
}

}  // namespace

Value::Value(const List& list) : Value(Kind::list, list._storage.get()) {}

Value::Value(const Dictionary& dictionary) : Value(Kind::dictionary, dictionary._storage.get()) {}

std::optional<double> Value::number() const {
  switch (kind()) {
    case Kind::boolean: return boolean() ? 1.0 : 0.0;
    case Kind::int32:
    case Kind::uint32:
    case Kind::int64: return static_cast<double>(_as.integer);
    case Kind::uint64: return static_cast<double>(_as.natural);
    case Kind::float32: return static_cast<double>(_as.float32);
    case Kind::float64: return _as.float64;
    default: return std::nullopt;
  }
}

Ref<Data> Value::data() const { return Ref<Data>(objectAs<Data>(_as.part)); }

List Value::list() const { return List(Ref<List::Storage>(objectAs<List::Storage>(_as.part))); }

Dictionary Value::dictionary() const {
  return Dictionary(Ref<Dictionary::Storage>(objectAs<Dictionary::Storage>(_as.part)));
}

bool operator==(const Value& a, const Value& b) {
  if (a.isInteger() && b.isInteger()) {
    const auto x = a.integer();
    const auto y = b.integer();
    return x || y ? x == y : a._as.natural == b._as.natural;
  }
  if (a.kind() != b.kind()) return false;
  switch (a.kind()) {
    case Value::Kind::boolean: return a.boolean() == b.boolean();
    case Value::Kind::float32: return a._as.float32 == b._as.float32;
    case Value::Kind::float64: return a._as.float64 == b._as.float64;
    case Value::Kind::text: return a.text() == b.text();
    case Value::Kind::data: return a.data()->isEqual(*b.data());
    case Value::Kind::list: return a.list() == b.list();
    case Value::Kind::dictionary: return a.dictionary() == b.dictionary();
    default: return true;
  }
}

List::List(std::initializer_list<Value> values) {
  for (const Value& value : values) append(value);
}

void List::reserve(std::size_t count) {
  if (count > size()) Storage::own(_storage, count - size(), true);
}

Dictionary::Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals) {
  for (const auto& [key, value] : literals) set(Literal{key}, value);
}

std::size_t Dictionary::search(std::span<const Entry> all, Literal key) {
  bool once = key.padded;  // such a text stands once, and here so do all
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (once && all[i].key._as.literal == key.text.data()) return i;
    once = once && all[i].key.isPadded();
  }
  if (once) return all.size();
  for (std::size_t i = 0; i < all.size(); ++i)
    if (all[i].key.text() == key.text) return i;
  return all.size();
}

void Dictionary::reserve(std::size_t count) {
  if (count > size()) Storage::own(_storage, count - size(), true);
}

void Dictionary::set(Value key, Value value) {
  const std::size_t index = indexOf(Literal{key.text(), key.isPadded()});
  if (index == size())
    append(std::move(key), std::move(value));
  else
    setAt(index, std::move(value));
}

Dictionary Dictionary::bridged() const {
  Dictionary copy(_storage ? _storage->copy(0) : Storage::create(0));
  copy._storage->marked = true;
  return copy;
}

}  // namespace quorin
