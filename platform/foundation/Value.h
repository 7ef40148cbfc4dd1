#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Data.h"
#include "platform/foundation/Literal.h"

namespace quorin {

class Dictionary;
class Elements;
class List;

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

  constexpr Value() = default;
  explicit Value(bool value) : _head(head(Kind::boolean)) { _as.natural = value ? 1 : 0; }
  explicit Value(std::int32_t value) : _head(head(Kind::int32)) { _as.integer = value; }
  explicit Value(std::uint32_t value) : _head(head(Kind::uint32)) { _as.integer = value; }
  explicit Value(std::int64_t value) : _head(head(Kind::int64)) { _as.integer = value; }
  explicit Value(std::uint64_t value) : _head(head(Kind::uint64)) { _as.natural = value; }
  explicit Value(float value) : _head(head(Kind::float32)) {
    _as.natural = std::bit_cast<std::uint32_t>(value);  // a half-word store would stall its copy
  }
  explicit Value(double value) : _head(head(Kind::float64)) { _as.float64 = value; }
  explicit constexpr Value(Literal literal)
      : _head(head(Kind::text) | (literal.padded ? kPadded : 0) |
              std::uint64_t{static_cast<std::uint32_t>(literal.text.size())} << kLengthShift) {
    _as.literal = literal.text.data();
  }
  explicit Value(const std::string& text) : Value(make<String>(text)) {}
  explicit Value(const String& text) : _head(head(Kind::text) | kCounted) {
    text.retain();
    _as.part = &text;
  }
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
  constexpr Value(Value&& other) noexcept : _head(std::exchange(other._head, 0)), _as(other._as) {}
  constexpr Value& operator=(Value other) noexcept {
    std::swap(_head, other._head);
    std::swap(_as, other._as);
    return *this;
  }
  constexpr ~Value() {
    if (const Part* part = counted()) part->release();
  }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(_head & 0xff); }
  [[nodiscard]] bool isInteger() const { return kind() >= Kind::int32 && kind() <= Kind::uint64; }

  /// The integer as a signed 64-bit number; empty for other kinds and beyond its range.
  [[nodiscard]] std::optional<std::int64_t> integer() const {
    return isInteger64() ? std::optional(_as.integer) : std::nullopt;
  }
  /// Whether there is one. Then it is `integer64`.
  [[nodiscard]] bool isInteger64() const {
    return isInteger() && (kind() != Kind::uint64 || _as.integer >= 0);
  }
  [[nodiscard]] std::int64_t integer64() const { return _as.integer; }
  /// The number, of any numeric kind; empty for other kinds.
  [[nodiscard]] std::optional<double> number() const;

  /// Each requires its kind.
  [[nodiscard]] bool boolean() const { return _as.natural != 0; }
  [[nodiscard]] std::uint64_t natural() const { return _as.natural; }
  [[nodiscard]] float float32() const {
    return std::bit_cast<float>(static_cast<std::uint32_t>(_as.natural));
  }
  [[nodiscard]] double float64() const { return _as.float64; }
  [[nodiscard]] std::string_view text() const {
    return isPlain() ? std::string_view(_as.literal, _head >> kLengthShift)
                     : static_cast<const String*>(_as.part)->text();
  }
  [[nodiscard]] Ref<Data> data() const;
  /// What `data` holds, as long as this value.
  [[nodiscard]] Bytes bytes() const { return static_cast<const Data*>(_as.part)->bytes(); }
  /// Of text that does not live as long as the program.
  [[nodiscard]] Ref<String> string() const;
  [[nodiscard]] List list() const;
  /// Of a list or dictionary; null without memory.
  [[nodiscard]] inline const Elements* elements() const;
  [[nodiscard]] Dictionary dictionary() const;

  /// Whether it is a number, or text that lives as long as the program.
  [[nodiscard]] constexpr bool isPlain() const { return (_head & kCounted) == 0; }
  /// For a copy of this value's bytes, made where no constructor may run.
  void retain() const {
    if (const Part* part = counted()) part->retain();
  }
  /// The destructor, of a value which does not count an object that is near.
  template <class IsNear>
  void end(IsNear isNear) {
    if (const Part* part = counted(); part && !isNear(part)) part->release();
  }
  /// Replaces a value that is plain by another one: word by word, since one that was just made may
  /// not yet be loaded as a whole without a stall.
  void become(const Value& plain) {
    _head = plain._head;
    _as.natural = plain._as.natural;
  }
  /// The same by one that was made long ago.
  void becomeOld(const Value& plain) {
    std::memcpy(static_cast<void*>(this), &plain, sizeof plain);
  }
  /// What it holds. Requires: it is not plain.
  [[nodiscard]] const Part* held() const { return _as.part; }
  /// A copy that counts nothing: of one that is plain, or for the memory that its object lies in.
  [[nodiscard]] static Value plain(const Value& value) {
    Value copy;
    copy.become(value);
    return copy;
  }
  /// What lies in one block with this value, and is not counted.
  [[nodiscard]] static Value inside(const String* text) { return uncounted(Kind::text, text); }
  [[nodiscard]] static Value inside(const Data* data) { return uncounted(Kind::data, data); }
  [[nodiscard]] static Value inside(Kind listOrDictionary, const Elements* elements);
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

  [[nodiscard]] constexpr const Part* counted() const { return isPlain() ? nullptr : _as.part; }

  std::uint64_t _head = 0;
  union {
    std::int64_t integer;
    std::uint64_t natural;
    double float64;
    const char* literal;
    const Part* part;
  } _as{};
};

}  // namespace quorin
