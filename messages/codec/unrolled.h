#pragma once

// The rows of a class walked by the compiler: straight code for what a modem usually sends, a
// message whose fields ascend. Whatever else comes is left to the exact reader, which is the truth.

#include <bit>
#include <cstring>

#include "messages/codec/AnyMessage.h"
#include "metrics/registry/KBBMetricUtility.h"

namespace quorin {

/// Zigzag with an arithmetic shift: meant, so that an encoded bit 31 is read as a sign.
inline std::int32_t signedFromVarint(std::uint64_t varint) {
  const auto n = static_cast<std::int32_t>(static_cast<std::uint32_t>(varint));
  return -(n & 1) ^ (n >> 1);
}

/// The value of an enumeration as its name, or as a number that has none.
[[nodiscard]] Value valueNamed(const EnumTable& names, std::int32_t value);

/// Writes the line of a registered tag's value.
void logUnknownTag(std::uint16_t tag, std::uint32_t value);

namespace unrolled {

static_assert(std::endian::native == std::endian::little, "wide loads read the first byte lowest");

using Position = const std::uint8_t*;

/// Behind the varint at `at`, whose value is put into `value`; null when it takes nine or ten
/// bytes.
inline Position longVarint(Position at, std::uint64_t& value) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  const std::uint64_t ends = ~word & 0x8080808080808080;
  if (ends == 0) return nullptr;
  word &= ends ^ (ends - 1);  // up to the first byte that announces no other
  word = (word & 0x7f007f007f007f00) >> 1 | (word & 0x007f007f007f007f);
  word = (word & 0x3fff00003fff0000) >> 2 | (word & 0x00003fff00003fff);
  value = (word & 0x0fffffff00000000) >> 4 | (word & 0x000000000fffffff);
  return at + (std::countr_zero(ends) / 8 + 1);
}

[[gnu::always_inline]] inline Position varint(Position at, std::uint64_t& value) {
  value = *at;
  if (value < 0x80) return at + 1;
  const std::uint64_t second = at[1];
  if (second >= 0x80) return longVarint(at, value);
  value = (value & 0x7f) | second << 7;
  return at + 2;
}

template <class M, std::size_t row>
inline constexpr Field kField = kFields<M>[row];

/// The class of a nested message.
template <class M, std::size_t row>
using ElementOf = decltype(M::elementOf(Number<kField<M, row>.number>{}));

enum WireType : std::uint8_t { kVarint = 0, kDelimited = 2 };

/// What a message of ascending fields has as this field's key.
constexpr std::uint32_t usualKey(const Field& field) {
  return field.number << 3 | (field.kind <= Kind::boolean ? kVarint : kDelimited);
}

/// Behind the key of this field; null where another one stands.
template <class M, std::size_t row>
[[gnu::always_inline]] inline Position behindKey(Position at, Position end) {
  constexpr std::uint32_t key = usualKey(kField<M, row>);
  static_assert(key < 1 << 14);
  if (at >= end) return nullptr;
  if constexpr (key < 0x80) return *at == key ? at + 1 : nullptr;
  constexpr auto kWide = static_cast<std::uint16_t>((key & 0x7f) | 0x80 | key >> 7 << 8);
  std::uint16_t read = 0;
  std::memcpy(&read, at, sizeof read);
  return read == kWide ? at + 2 : nullptr;
}

/// Reads a length and gives where its content begins; null where it is not all there.
[[gnu::always_inline]] inline Position content(Position at, Position end, std::size_t& length) {
  std::uint64_t read = 0;
  at = varint(at, read);
  length = static_cast<std::size_t>(read);
  return at && at <= end && read <= static_cast<std::uint64_t>(end - at) ? at : nullptr;
}

/// A registered tag's value is read, logged and dropped.
template <class M>
inline constexpr auto isRegistered = [](const Field& field) {
  return M::kKeyRule == KeyRule::cut &&
         KBBMetricUtility::isTag(static_cast<std::uint16_t>(field.number));
};

/// An element that turns out to be unusual is read again, which must not repeat a log line.
template <class M>
inline constexpr bool kLogsNothing = std::ranges::none_of(kFields<M>, isRegistered<M>);

template <class M, std::size_t... rows>
void readRows(M& m, Position& at, Position end, std::uint64_t& has, std::index_sequence<rows...>);

template <class M>
using Rows = std::make_index_sequence<kFields<M>.size()>;

/// A nested message between the two; null, with nothing done, when something in it is unusual.
template <class Element>
[[gnu::always_inline]] inline Ref<Element> readElement(Position at, Position end) {
  static_assert(kLogsNothing<Element>);
  auto element = make<Element>();
  std::uint64_t has = 0;
  readRows(*element, at, end, has, Rows<Element>{});
  element->addHas(has);
  return at == end ? std::move(element) : nullptr;
}

/// Reads the value of one field behind its key, and gives where it ends; null, with nothing done,
/// when it is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline Position readValue(M& m, Position at, Position end,
                                                 std::uint64_t& has) {
  constexpr const Field& field = kField<M, row>;
  constexpr Kind kind = field.kind;
  if constexpr (usualKey(field) % 8 == kVarint) {
    std::uint64_t value = 0;
    at = varint(at, value);
    if (!at || at > end) return nullptr;
    if constexpr (isRegistered<M>(field)) {
      (void)KBBMetricUtility::isValidMetricIdTag(field.number, M::kName);
      logUnknownTag(field.number, static_cast<std::uint32_t>(value));
      return at;
    }
    has |= std::uint64_t{1} << field.number;
    if constexpr (kind == Kind::uint64)
      field.template in<std::uint64_t>(m) = value;
    else if constexpr (kind == Kind::uint32)
      field.template in<std::uint32_t>(m) = static_cast<std::uint32_t>(value);
    else if constexpr (kind == Kind::enumeration)
      field.template in<std::int32_t>(m) = static_cast<std::int32_t>(value);
    else if constexpr (kind == Kind::sint32)
      field.template in<std::int32_t>(m) = signedFromVarint(value);
    else
      field.template in<bool>(m) = value != 0;
    return at;
  } else {
    static_assert(!isRegistered<M>(field));
    std::size_t length = 0;
    at = content(at, end, length);
    if (!at) return nullptr;
    const Position stop = at + length;
    if constexpr (kind == Kind::bytes) {
      field.template in<Ref<Data>>(m) = Data::createFromPadded(Bytes(at, length));
    } else if constexpr (kind == Kind::string) {
      field.template in<Ref<String>>(m) =
          make<String>(std::string_view(reinterpret_cast<const char*>(at), length));
    } else if constexpr (kind == Kind::message) {
      auto element = readElement<ElementOf<M, row>>(at, stop);
      if (!element) return nullptr;
      field.template in<Ref<AnyMessage>>(m) = std::move(element);
    } else {
      using Numbers =
          std::conditional_t<kind == Kind::packedUint32, PBRepeatedUInt32, PBRepeatedInt32>;
      auto& values = field.template in<Numbers>(m).values;
      const std::size_t before = values.size();
      if (before == 0) values.reserve(length);  // a number takes a byte at least
      for (std::uint64_t value = 0; at < stop;) {
        at = varint(at, value);
        if (!at || at > stop) {
          values.resize(before);
          return nullptr;
        }
        if constexpr (kind == Kind::packedUint32)
          values.push_back(static_cast<std::uint32_t>(value));
        else
          values.push_back(signedFromVarint(value));
      }
    }
    return stop;
  }
}

/// Reads the elements that stand next. False: what stands there is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readElements(M& m, Position& at, Position end) {
  MessageArray* array = kField<M, row>.template in<Ref<MessageArray>>(m).get();
  while (Position element = behindKey<M, row>(at, end)) {
    std::size_t length = 0;
    element = content(element, end, length);
    if (!element) return false;
    auto made = readElement<ElementOf<M, row>>(element, element + length);
    if (!made) return false;
    if (!array) {
      auto& slot = kField<M, row>.template in<Ref<MessageArray>>(m);
      slot = make<MessageArray>();
      array = slot.get();
    }
    array->elements.push_back(std::move(made));
    at = element + length;
  }
  return true;
}

/// Reads the field where it stands next. False: what stands there is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readNext(M& m, Position& at, Position end, std::uint64_t& has) {
  if constexpr (kField<M, row>.kind == Kind::repeated) {
    return readElements<M, row>(m, at, end);
  } else {
    const Position value = behindKey<M, row>(at, end);
    if (!value) return true;
    const Position behind = readValue<M, row>(m, value, end, has);
    if (behind) at = behind;
    return behind != nullptr;
  }
}

/// Where a dictionary's next entry is made, and whether all so far are plain.
struct Entries {
  Dictionary::Entry* next;
  bool plain = true;

  [[gnu::always_inline]] void append(Literal key, Value value) {
    plain = plain && value.isPlain();
    new (next++) Dictionary::Entry{Value(key), std::move(value)};
  }
};

template <class Element>
[[nodiscard]] Value listOfElements(const MessageArray& array) {
  ListMaker list(array.elements.size());
  Value* next = list.place();
  for (const auto& element : array.elements)
    new (next++) Value(Unrolled<Element>::dictionary(*element));
  return Value(list.made(next, /*plain=*/false));
}

/// Appends the field's entry where it is present.
template <class M, std::size_t row>
[[gnu::always_inline]] inline Entries appendEntry(Entries entries, const M& m, std::uint64_t has) {
  constexpr const Field& field = kField<M, row>;
  constexpr Kind kind = field.kind;
  constexpr Literal key = kKey<FixedText<field.key.size()>(field.key)>;
  const auto scalar = [&]<class T>(T) {
    if (has >> field.number & 1) entries.append(key, Value(field.template in<T>(m)));
  };
  const auto object = [&]<class T>(Ref<T>) {
    if (const auto& value = field.template in<Ref<T>>(m)) entries.append(key, Value(value));
  };
  const auto numbers = [&]<class Numbers>(List (*listOf)(const Numbers&)) {
    const auto& repeated = field.template in<Numbers>(m);
    if (!repeated.values.empty()) entries.append(key, Value(listOf(repeated)));
  };
  if constexpr (kind == Kind::uint64) {
    scalar(std::uint64_t{});
  } else if constexpr (kind == Kind::uint32) {
    scalar(std::uint32_t{});
  } else if constexpr (kind == Kind::sint32) {
    scalar(std::int32_t{});
  } else if constexpr (kind == Kind::boolean) {
    scalar(bool{});
  } else if constexpr (kind == Kind::enumeration) {
    if (has >> field.number & 1) {
      const std::int32_t value = field.template in<std::int32_t>(m);
      const std::string_view name = field.names.nameBeforeGaps(value);
      entries.append(key, name.empty() ? valueNamed(field.names, value) : Value(Literal{name}));
    }
  } else if constexpr (kind == Kind::bytes) {
    object(Ref<Data>{});
  } else if constexpr (kind == Kind::string) {
    object(Ref<String>{});
  } else if constexpr (kind == Kind::packedUint32) {
    numbers(PBRepeatedUInt32NSArray);
  } else if constexpr (kind == Kind::packedSint32) {
    numbers(PBRepeatedInt32NSArray);
  } else if constexpr (kind == Kind::message) {
    if (const auto& message = field.template in<Ref<AnyMessage>>(m))
      entries.append(key, Value(Unrolled<ElementOf<M, row>>::dictionary(*message)));
  } else {
    const auto& array = field.template in<Ref<MessageArray>>(m);
    if (array && !array->elements.empty())
      entries.append(key, listOfElements<ElementOf<M, row>>(*array));
  }
  return entries;
}

template <class M, std::size_t... rows>
[[gnu::always_inline]] inline void readRows(M& m, Position& at, Position end, std::uint64_t& has,
                                            std::index_sequence<rows...>) {
  (void)(readNext<M, rows>(m, at, end, has) && ...);
}

template <class M, std::size_t... rows>
[[gnu::always_inline]] inline Entries appendEntries(Entries entries, const M& m,
                                                    std::index_sequence<rows...>) {
  const std::uint64_t has = m.presence();
  ((entries = appendEntry<M, rows>(entries, m, has)), ...);
  return entries;
}

}  // namespace unrolled

template <class M>
const std::uint8_t* Unrolled<M>::read(AnyMessage& message, const std::uint8_t* at,
                                      const std::uint8_t* end) {
  auto& m = static_cast<M&>(message);
  std::uint64_t has = 0;
  unrolled::readRows(m, at, end, has, unrolled::Rows<M>{});
  m.addHas(has);
  return at;
}

template <class M>
Dictionary Unrolled<M>::dictionary(const AnyMessage& message) {
  const auto& m = static_cast<const M&>(message);
  DictionaryMaker dictionary(kFields<M>.size());
  const auto entries = unrolled::appendEntries({dictionary.place()}, m, unrolled::Rows<M>{});
  return dictionary.made(entries.next, entries.plain);
}

}  // namespace quorin
