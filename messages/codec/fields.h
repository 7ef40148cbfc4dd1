#pragma once

// The rows of a message class: number, dictionary key, property and, where the name has another
// form in an accessor, that form too. These are the only macros of the product.

#include "messages/codec/AnyMessage.h"

#define PB_MESSAGE(Class) \
 private:                 \
  using Self = Class;     \
                          \
 public:                  \
  static constexpr std::string_view kName = #Class;

#define PB_WHOLE_KEYS \
 public:              \
  static constexpr KeyRule kKeyRule = KeyRule::whole;

#define PB_FIELD_(kind, number, key, x, ...)                                            \
  static constexpr Field field(Number<number>) { /* one number twice: no compile */     \
    static_assert(number < kFieldNumberLimit);                                          \
    return {number, Kind::kind, key, #x, slot(&Self::_##x) __VA_OPT__(, ) __VA_ARGS__}; \
  }

#define PB_SCALAR_(type, kind, number, key, x, X, got, ...)  \
 public:                                                     \
  [[nodiscard]] type x() const { return got; }               \
  void set##X(type value) {                                  \
    unfolded(_##x) = value;                                  \
    setHas(number, true);                                    \
  }                                                          \
  [[nodiscard]] bool has##X() const { return has(number); }  \
  void setHas##X(bool present) { setHas(number, present); }  \
  PB_FIELD_(kind, number, key, x __VA_OPT__(, ) __VA_ARGS__) \
 private:                                                    \
  type _##x{};

#define PB_UINT64(number, key, x, X) \
  PB_SCALAR_(std::uint64_t, uint64, number, key, x, X, unfolded(_##x))
#define PB_UINT32(number, key, x, X) \
  PB_SCALAR_(std::uint32_t, uint32, number, key, x, X, unfolded(_##x))
#define PB_SINT32(number, key, x, X) \
  PB_SCALAR_(std::int32_t, sint32, number, key, x, X, unfolded(_##x))
#define PB_BOOL(number, key, x, X) \
  PB_SCALAR_(bool, boolean, number, key, x, X, unfolded(_##x))
// The getter of an enumeration alone gives 0 while the field is absent.
#define PB_ENUM(number, key, x, X, names)                  \
  PB_SCALAR_(std::int32_t, enumeration, number, key, x, X, \
             (has(number) ? unfolded(_##x) : 0), names)

#define PB_OBJECT_(type, kind, number, key, x, X)                                 \
 public:                                                                          \
  [[nodiscard]] Ref<type> x() const { return unfolded(_##x); }                    \
  void set##X(Ref<type> value) { unfolded(_##x) = std::move(value); }             \
  [[nodiscard]] bool has##X() const { return static_cast<bool>(unfolded(_##x)); } \
  PB_FIELD_(kind, number, key, x)                                                 \
 private:                                                                         \
  Ref<type> _##x;

#define PB_BYTES(number, key, x, X) PB_OBJECT_(Data, bytes, number, key, x, X)
#define PB_STRING(number, key, x, X) PB_OBJECT_(String, string, number, key, x, X)

#define PB_SUBMESSAGE(number, key, x, X, type)                                    \
 public:                                                                          \
  [[nodiscard]] Ref<type> x() const {                                             \
    return Ref<type>(static_cast<type*>(unfolded(_##x).get()));                   \
  }                                                                               \
  void set##X(const Ref<type>& value) { unfolded(_##x) = value; }                 \
  [[nodiscard]] bool has##X() const { return static_cast<bool>(unfolded(_##x)); } \
  PB_FIELD_(message, number, key, x, {}, &kTable<type>)                           \
  static type elementOf(Number<number>);                                          \
 private:                                                                         \
  Ref<AnyMessage> _##x;

#define PB_REPEATED(number, key, one, One, many, Many, type)                             \
 public:                                                                                 \
  [[nodiscard]] Ref<MessageArray> many() const { return unfolded(_##many); }             \
  void set##Many(Ref<MessageArray> array) { unfolded(_##many) = std::move(array); }      \
  void clear##Many() {                                                                   \
    if (unfolded(_##many)) unfolded(_##many)->elements.clear();                          \
  }                                                                                      \
  void add##One(const Ref<type>& element) { appendElement(unfolded(_##many), element); } \
  [[nodiscard]] std::size_t many##Count() const {                                        \
    return unfolded(_##many) ? unfolded(_##many)->elements.size() : 0;                   \
  }                                                                                      \
  /* Requires: index < count. */                                                         \
  [[nodiscard]] Ref<type> one##AtIndex(std::size_t index) const {                        \
    return Ref<type>(static_cast<type*>(unfolded(_##many)->elements.at(index).get()));   \
  }                                                                                      \
  PB_FIELD_(repeated, number, key, many, {}, &kTable<type>)                              \
  static type elementOf(Number<number>);                                                 \
 private:                                                                                \
  Ref<MessageArray> _##many;

#define PB_PACKED_(type, storage, kind, number, key, one, One, many, Many)                  \
 public:                                                                                    \
  [[nodiscard]] const type* many() const { return unfolded(_##many).values.data(); }        \
  [[nodiscard]] std::size_t many##Count() const { return unfolded(_##many).values.size(); } \
  /* Requires: index < count. */                                                            \
  [[nodiscard]] type one##AtIndex(std::size_t index) const {                                \
    return unfolded(_##many).values.at(index);                                              \
  }                                                                                         \
  void add##One(type value) { unfolded(_##many).values.push_back(value); }                  \
  void clear##Many() { unfolded(_##many).values.clear(); }                                  \
  void set##Many(const type* values, std::size_t count) {                                   \
    unfolded(_##many).values.assign(values, values + count);                                \
  }                                                                                         \
  PB_FIELD_(kind, number, key, many)                                                        \
 private:                                                                                   \
  storage _##many;

#define PB_PACKED_UINT32(number, key, one, One, many, Many) \
  PB_PACKED_(std::uint32_t, PBRepeatedUInt32, packedUint32, number, key, one, One, many, Many)
#define PB_PACKED_SINT32(number, key, one, One, many, Many) \
  PB_PACKED_(std::int32_t, PBRepeatedInt32, packedSint32, number, key, one, One, many, Many)
