#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Data.h"

namespace quorin {

class Dictionary;
class List;

/// Text that lives as long as the program, for keys and names from tables.
struct Literal {
  std::string_view text;
};

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
  explicit Value(bool value) : _kind(Kind::boolean) { _as.boolean = value; }
  explicit Value(std::int32_t value) : _kind(Kind::int32) { _as.integer = value; }
  explicit Value(std::uint32_t value) : _kind(Kind::uint32) { _as.integer = value; }
  explicit Value(std::int64_t value) : _kind(Kind::int64) { _as.integer = value; }
  explicit Value(std::uint64_t value) : _kind(Kind::uint64) { _as.natural = value; }
  explicit Value(float value) : _kind(Kind::float32) { _as.float32 = value; }
  explicit Value(double value) : _kind(Kind::float64) { _as.float64 = value; }
  explicit Value(Literal literal)
      : _kind(Kind::text), _length(static_cast<std::uint32_t>(literal.text.size())) {
    _as.literal = literal.text.data();
  }
  explicit Value(std::string text) : Value(make<String>(std::move(text))) {}
  explicit Value(const Ref<String>& text) : Value(text ? Kind::text : Kind::nothing, text.get()) {}
  explicit Value(const Ref<Data>& data) : Value(data ? Kind::data : Kind::nothing, data.get()) {}
  explicit Value(const List& list);
  explicit Value(const Dictionary& dictionary);
  explicit Value(const void*) = delete;  // keeps a pointer from passing for a boolean

  Value(const Value& other)
      : _kind(other._kind), _counted(other._counted), _length(other._length), _as(other._as) {
    if (const Object* object = counted()) object->retain();
  }
  Value(Value&& other) noexcept
      : _kind(other._kind), _counted(other._counted), _length(other._length), _as(other._as) {
    other._kind = Kind::nothing;
    other._counted = false;
  }
  Value& operator=(Value other) noexcept {
    std::swap(_kind, other._kind);
    std::swap(_counted, other._counted);
    std::swap(_length, other._length);
    std::swap(_as, other._as);
    return *this;
  }
  ~Value() {
    if (const Object* object = counted()) object->release();
  }

  [[nodiscard]] Kind kind() const { return _kind; }
  [[nodiscard]] bool isInteger() const { return _kind >= Kind::int32 && _kind <= Kind::uint64; }

  /// The integer as a signed 64-bit number; empty for other kinds and beyond its range.
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  /// The number, of any numeric kind; empty for other kinds.
  [[nodiscard]] std::optional<double> number() const;

  /// Each requires its kind.
  [[nodiscard]] bool boolean() const { return _as.boolean; }
  [[nodiscard]] std::uint64_t natural() const { return _as.natural; }
  [[nodiscard]] float float32() const { return _as.float32; }
  [[nodiscard]] double float64() const { return _as.float64; }
  [[nodiscard]] std::string_view text() const;
  [[nodiscard]] Ref<Data> data() const;
  [[nodiscard]] List list() const;
  [[nodiscard]] Dictionary dictionary() const;

  /// Same kind of value and same content; integers compare by their number, whatever their width.
  friend bool operator==(const Value& a, const Value& b);

 private:
  Value(Kind kind, const Object* object) : _kind(kind), _counted(object != nullptr) {
    _as.object = object;
    if (object) object->retain();
  }

  [[nodiscard]] const Object* counted() const { return _counted ? _as.object : nullptr; }

  Kind _kind = Kind::nothing;
  bool _counted = false;
  std::uint32_t _length = 0;  // of a literal
  union {
    bool boolean;
    std::int64_t integer;
    std::uint64_t natural;
    float float32;
    double float64;
    const char* literal;
    const Object* object;
  } _as{};
};

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
  void reserve(std::size_t count);
  void append(Value value);

  friend bool operator==(const List& a, const List& b) { return a.values() == b.values(); }

 private:
  friend class Value;
  struct Storage final : Object {
    std::vector<Value> values;
  };
  explicit List(Ref<Storage> storage) : _storage(std::move(storage)) {}
  [[nodiscard]] const std::vector<Value>& values() const;
  Storage& own();

  Ref<Storage> _storage;
};

/// Values under text keys, in the order in which the keys were first set.
class Dictionary {
 public:
  struct Entry {
    Value key;  // text
    Value value;
    friend bool operator==(const Entry&, const Entry&) = default;
  };

  Dictionary() = default;
  Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals);

  [[nodiscard]] std::size_t size() const { return entries().size(); }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] auto begin() const { return entries().begin(); }
  [[nodiscard]] auto end() const { return entries().end(); }
  [[nodiscard]] const Entry& operator[](std::size_t index) const { return entries()[index]; }

  /// The value under `key`, or null.
  [[nodiscard]] const Value* find(std::string_view key) const;
  void reserve(std::size_t count);
  /// Replaces the value in its place, or appends it.
  void set(Value key, Value value);
  void set(Literal key, Value value) { set(Value(key), std::move(value)); }
  /// Appends. Requires: no entry has this key.
  void append(Literal key, Value value);

  /// Whether this is the platform's own dictionary behind a bridge, and not the program's.
  [[nodiscard]] bool isBridged() const { return _storage && _storage->bridged; }
  /// A copy that carries the bridge's mark.
  [[nodiscard]] Dictionary bridged() const;

  friend bool operator==(const Dictionary& a, const Dictionary& b) {
    return a.entries() == b.entries();
  }

 private:
  friend class Value;
  struct Storage final : Object {
    std::vector<Entry> entries;
    bool bridged = false;
  };
  explicit Dictionary(Ref<Storage> storage) : _storage(std::move(storage)) {}
  [[nodiscard]] const std::vector<Entry>& entries() const;
  Storage& own();

  Ref<Storage> _storage;
};

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
