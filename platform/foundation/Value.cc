#include "platform/foundation/Dictionary.h"

namespace quorin {

namespace {

template <class T>
T* objectAs(const Part* part) {
  return const_cast<T*>(static_cast<const T*>(part));
}

}  // namespace

Value::Value(const List& list) : Value(Kind::list, list._elements.get()) {}

Value::Value(const Dictionary& dictionary) : Value(Kind::dictionary, dictionary._elements.get()) {}

std::optional<double> Value::number() const {
  switch (kind()) {
    case Kind::boolean: return boolean() ? 1.0 : 0.0;
    case Kind::int32:
    case Kind::uint32:
    case Kind::int64: return static_cast<double>(_as.integer);
    case Kind::uint64: return static_cast<double>(_as.natural);
    case Kind::float32: return static_cast<double>(float32());
    case Kind::float64: return _as.float64;
    default: return std::nullopt;
  }
}

Ref<String> Value::string() const { return Ref<String>(objectAs<String>(_as.part)); }

Ref<Data> Value::data() const { return Ref<Data>(objectAs<Data>(_as.part)); }

Dictionary Value::dictionary() const {
  return Dictionary(Ref<Elements>(objectAs<Elements>(_as.part)));
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
    case Value::Kind::float32: return a.float32() == b.float32();
    case Value::Kind::float64: return a._as.float64 == b._as.float64;
    case Value::Kind::text: return a.text() == b.text();
    case Value::Kind::data: return a.data()->isEqual(*b.data());
    case Value::Kind::list: return a.list() == b.list();
    case Value::Kind::dictionary: return a.dictionary() == b.dictionary();
    default: return true;
  }
}

}  // namespace quorin
