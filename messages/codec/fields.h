#pragma once

// The rows of a message class: number, dictionary key, property and, where the name has another
// form in an accessor, that form too. These are the only macros of the product.

#include "messages/codec/AnyMessage.h"

#define PB_MESSAGE(Class)                         \
 private:                                         \
  using Self = Class;                             \
                                                  \
 public:                                          \
  static constexpr std::string_view kName = #Class;

#define PB_WHOLE_KEYS \
 public:              \
  static constexpr KeyRule kKeyRule = KeyRule::whole;

#define PB_FIELD_(kind, number, key, x, ...)                                         \
  static constexpr Field field(Number<number>) { /* one number twice: no compile */ \
    static_assert(number < kFieldNumberLimit);                                       \
    return {number, Kind::kind, key, #x, slot(&Self::_##x) __VA_OPT__(, ) __VA_ARGS__}; \
  }

#define PB_SCALAR_(type, kind, number, key, x, X, got, ...)   \
 public:                                                      \
  [[nodiscard]] type x() const { return got; }                \
  void set##X(type value) {                                   \
    _##x = value;                                             \
    setHas(number, true);                                     \
  }                                                           \
  [[nodiscard]] bool has##X() const { return has(number); }   \
  void setHas##X(bool present) { setHas(number, present); }   \
  PB_FIELD_(kind, number, key, x __VA_OPT__(, ) __VA_ARGS__)  \
 private:                                                     \
  type _##x{};

#define PB_UINT64(number, key, x, X) PB_SCALAR_(std::uint64_t, uint64, number, key, x, X, _##x)
#define PB_UINT32(number, key, x, X) PB_SCALAR_(std::uint32_t, uint32, number, key, x, X, _##x)
#define PB_SINT32(number, key, x, X) PB_SCALAR_(std::int32_t, sint32, number, key, x, X, _##x)
#define PB_BOOL(number, key, x, X) PB_SCALAR_(bool, boolean, number, key, x, X, _##x)
// The getter of an enumeration alone gives 0 while the field is absent.
#define PB_ENUM(number, key, x, X, names)                                                         \
  PB_SCALAR_(std::int32_t, enumeration, number, key, x, X, (has(number) ? _##x : 0), names)

#define PB_OBJECT_(type, kind, number, key, x, X)                      \
 public:                                                               \
  [[nodiscard]] Ref<type> x() const { return _##x; }                   \
  void set##X(Ref<type> value) { _##x = std::move(value); }            \
  [[nodiscard]] bool has##X() const { return static_cast<bool>(_##x); } \
  PB_FIELD_(kind, number, key, x)                                      \
 private:                                                              \
  Ref<type> _##x;

#define PB_BYTES(number, key, x, X) PB_OBJECT_(Data, bytes, number, key, x, X)
#define PB_STRING(number, key, x, X) PB_OBJECT_(String, string, number, key, x, X)

#define PB_SUBMESSAGE(number, key, x, X, type)                                         \
 public:                                                                               \
  [[nodiscard]] Ref<type> x() const { return Ref<type>(static_cast<type*>(_##x.get())); } \
  void set##X(const Ref<type>& value) { _##x = value; }                                \
  [[nodiscard]] bool has##X() const { return static_cast<bool>(_##x); }                \
  PB_FIELD_(message, number, key, x, {}, &kTable<type>)                                \
  static type elementOf(Number<number>);                                               \
 private:                                                                              \
  Ref<AnyMessage> _##x;

#define PB_REPEATED(number, key, one, One, many, Many, type)                                  \
 public:                                                                                      \
  [[nodiscard]] Ref<MessageArray> many() const { return _##many; }                            \
  void set##Many(Ref<MessageArray> array) { _##many = std::move(array); }                     \
  void clear##Many() {                                                                        \
    if (_##many) _##many->elements.clear();                                                   \
  }                                                                                           \
  void add##One(const Ref<type>& element) { appendElement(_##many, element); }                \
  [[nodiscard]] std::size_t many##Count() const {                                             \
    return _##many ? _##many->elements.size() : 0;                                            \
  }                                                                                           \
  /* Requires: index < count. */                                                              \
  [[nodiscard]] Ref<type> one##AtIndex(std::size_t index) const {                             \
    return Ref<type>(static_cast<type*>(_##many->elements.at(index).get()));                  \
  }                                                                                           \
  PB_FIELD_(repeated, number, key, many, {}, &kTable<type>)                                   \
  static type elementOf(Number<number>);                                                      \
 private:                                                                                     \
  Ref<MessageArray> _##many;

#define PB_PACKED_(type, storage, kind, number, key, one, One, many, Many)                    \
 public:                                                                                      \
  [[nodiscard]] const type* many() const { return _##many.values.data(); }                    \
  [[nodiscard]] std::size_t many##Count() const { return _##many.values.size(); }             \
  /* Requires: index < count. */                                                              \
  [[nodiscard]] type one##AtIndex(std::size_t index) const { return _##many.values.at(index); } \
  void add##One(type value) { _##many.values.push_back(value); }                              \
  void clear##Many() { _##many.values.clear(); }                                              \
  void set##Many(const type* values, std::size_t count) {                                     \
    _##many.values.assign(values, values + count);                                            \
  }                                                                                           \
  PB_FIELD_(kind, number, key, many)                                                          \
 private:                                                                                     \
  storage _##many;

#define PB_PACKED_UINT32(number, key, one, One, many, Many) \
  PB_PACKED_(std::uint32_t, PBRepeatedUInt32, packedUint32, number, key, one, One, many, Many)
#define PB_PACKED_SINT32(number, key, one, One, many, Many) \
  PB_PACKED_(std::int32_t, PBRepeatedInt32, packedSint32, number, key, one, One, many, Many)
