#include "platform/foundation/Value.h"

#include <algorithm>
#include <limits>

namespace quorin {

namespace {

template <class T>
T* objectAs(const Object* object) {
  return const_cast<T*>(static_cast<const T*>(object));
}

}  // namespace

Value::Value(const List& list) : Value(Kind::list, list._storage.get()) {}

Value::Value(const Dictionary& dictionary) : Value(Kind::dictionary, dictionary._storage.get()) {}

std::optional<std::int64_t> Value::integer() const {
  if (!isInteger()) return std::nullopt;
  if (_kind == Kind::uint64 && _as.natural > std::numeric_limits<std::int64_t>::max())
    return std::nullopt;
  return _as.integer;
}

std::optional<double> Value::number() const {
  switch (_kind) {
    case Kind::boolean: return _as.boolean ? 1.0 : 0.0;
    case Kind::int32:
    case Kind::uint32:
    case Kind::int64: return static_cast<double>(_as.integer);
    case Kind::uint64: return static_cast<double>(_as.natural);
    case Kind::float32: return static_cast<double>(_as.float32);
    case Kind::float64: return _as.float64;
    default: return std::nullopt;
  }
}

std::string_view Value::text() const {
  return _counted ? objectAs<String>(_as.object)->text() : std::string_view(_as.literal, _length);
}

Ref<Data> Value::data() const { return Ref<Data>(objectAs<Data>(_as.object)); }

List Value::list() const { return List(Ref<List::Storage>(objectAs<List::Storage>(_as.object))); }

Dictionary Value::dictionary() const {
  return Dictionary(Ref<Dictionary::Storage>(objectAs<Dictionary::Storage>(_as.object)));
}

bool operator==(const Value& a, const Value& b) {
  if (a.isInteger() && b.isInteger()) {
    const auto x = a.integer();
    const auto y = b.integer();
    return x || y ? x == y : a._as.natural == b._as.natural;
  }
  if (a._kind != b._kind) return false;
  switch (a._kind) {
    case Value::Kind::boolean: return a._as.boolean == b._as.boolean;
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

const std::vector<Value>& List::values() const {
  static const std::vector<Value> kNone;
  return _storage ? _storage->values : kNone;
}

List::Storage& List::own() {
  if (!_storage || _storage->references() > 1) {
    auto copy = make<Storage>();
    copy->values = values();
    _storage = copy;
  }
  return *_storage;
}

void List::reserve(std::size_t count) { own().values.reserve(count); }

void List::append(Value value) { own().values.push_back(std::move(value)); }

Dictionary::Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals) {
  for (const auto& [key, value] : literals) set(Literal{key}, value);
}

const std::vector<Dictionary::Entry>& Dictionary::entries() const {
  static const std::vector<Entry> kNone;
  return _storage ? _storage->entries : kNone;
}

Dictionary::Storage& Dictionary::own() {
  if (!_storage || _storage->references() > 1) {
    auto copy = make<Storage>();
    copy->entries = entries();
    copy->bridged = isBridged();
    _storage = copy;
  }
  return *_storage;
}

const Value* Dictionary::find(std::string_view key) const {
  const auto& all = entries();
  const auto entry =
      std::ranges::find_if(all, [key](const Entry& e) { return e.key.text() == key; });
  return entry == all.end() ? nullptr : &entry->value;
}

void Dictionary::reserve(std::size_t count) { own().entries.reserve(count); }

void Dictionary::set(Value key, Value value) {
  auto& all = own().entries;
  const auto text = key.text();
  const auto entry =
      std::ranges::find_if(all, [text](const Entry& e) { return e.key.text() == text; });
  if (entry == all.end())
    all.push_back({std::move(key), std::move(value)});
  else
    entry->value = std::move(value);
}

void Dictionary::append(Literal key, Value value) {
  own().entries.push_back({Value(key), std::move(value)});
}

Dictionary Dictionary::bridged() const {
  Dictionary copy = *this;
  copy._storage = nullptr;
  copy.own().entries = entries();
  copy._storage->bridged = true;
  return copy;
}

}  // namespace quorin
