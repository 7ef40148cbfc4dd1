#pragma once

// The rows of a class walked by the compiler: straight code for what a modem usually sends, a
// message whose fields ascend. Whatever else comes is left to the exact reader, which is the truth.

#include <atomic>
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

/// The value of an enumeration as its name, or as a number that has none: in the block, if there is
/// one, and then nothing where that has no room.
[[nodiscard]] Value valueNamed(const EnumTable& names, std::int32_t value, Block* block);

/// Writes the line of a registered tag's value.
void logUnknownTag(std::uint16_t tag, std::uint32_t value);

namespace unrolled {

static_assert(std::endian::native == std::endian::little, "wide loads read the first byte lowest");

using Position = const std::uint8_t*;

/// A varint's value, and where it ends: null when it takes nine or ten bytes.
struct Varint {
  std::uint64_t value;
  Position behind;
};

[[gnu::noinline]] inline Varint longVarint(Position at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  const std::uint64_t ends = ~word & 0x8080808080808080;
  if (ends == 0) return {0, nullptr};
  word &= ends ^ (ends - 1);  // up to the first byte that announces no other
  word = (word & 0x7f007f007f007f00) >> 1 | (word & 0x007f007f007f007f);
  word = (word & 0x3fff00003fff0000) >> 2 | (word & 0x00003fff00003fff);
  word = (word & 0x0fffffff00000000) >> 4 | (word & 0x000000000fffffff);
  return {word, at + (std::countr_zero(ends) / 8 + 1)};
}

[[gnu::always_inline]] inline Varint varint(Position at) {
  const std::uint64_t first = at[0];
  if (first < 0x80) [[likely]]
    return {first, at + 1};
  const std::uint64_t second = at[1];
  if (second >= 0x80) return longVarint(at);
  return {(first & 0x7f) | second << 7, at + 2};
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

/// The key of this field as it stands in the bytes, lowest first.
template <class M, std::size_t row>
inline constexpr std::uint32_t kKeyBytes = [] {
  constexpr std::uint32_t key = usualKey(kField<M, row>);
  static_assert(key < 1 << 14);
  return key < 0x80 ? key : (key & 0x7f) | 0x80 | key >> 7 << 8;
}();
template <class M, std::size_t row>
inline constexpr std::size_t kKeySize = kKeyBytes<M, row> < 0x100 ? 1 : 2;

/// Whether the key of this field stands there. Nothing asks whether the message ends before: a
/// scalar that is read behind its end is found to reach too far.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool isKeyAt(Position at) {
  std::conditional_t<kKeySize<M, row> == 1, std::uint8_t, std::uint16_t> word;
  std::memcpy(&word, at, sizeof word);
  return word == kKeyBytes<M, row>;
}

/// Behind the key of this field; null where another one stands, or none.
template <class M, std::size_t row>
[[gnu::always_inline]] inline Position behindKey(Position at, Position end) {
  return at < end && isKeyAt<M, row>(at) ? at + kKeySize<M, row> : nullptr;
}

/// Reads a length and gives where its content begins; null where it is not all there.
[[gnu::always_inline]] inline Position content(Position at, Position end, std::size_t& length) {
  const auto [read, behind] = varint(at);
  length = static_cast<std::size_t>(read);
  const bool whole = behind && behind <= end && read <= static_cast<std::uint64_t>(end - behind);
  return whole ? behind : nullptr;
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

/// Whose end a message's reader looks at: a nested one's only behind its last field, since what has
/// begun to read it gives it up as a whole.
enum class Level { payload, nested };

/// Writes the lines of the class's registered tag, of which it has one at most.
template <class M>
void logRegistered(std::uint32_t value) {
  static_assert(std::ranges::count_if(kFields<M>, isRegistered<M>) == 1);
  constexpr auto field = std::ranges::find_if(kFields<M>, isRegistered<M>);
  (void)KBBMetricUtility::isValidMetricIdTag(field->number, M::kName);
  logUnknownTag(field->number, value);
}

template <class M, Level level, std::size_t... rows>
void readRows(M& m, Position& at, Position end, std::uint64_t& has, std::index_sequence<rows...>);

template <class M>
using Rows = std::make_index_sequence<kFields<M>.size()>;

/// A nested message between the two; null, with nothing done, when something in it is unusual.
template <class Element>
[[gnu::always_inline]] inline Ref<Element> readElement(Position at, Position end) {
  static_assert(kLogsNothing<Element>);
  auto element = make<Element>();
  std::uint64_t has = 0;
  readRows<Element, Level::nested>(*element, at, end, has, Rows<Element>{});
  element->addHas(has);
  return at == end ? std::move(element) : nullptr;
}

/// What a message stores the field as.
template <class M, std::size_t row>
using TypeOf = TypeOfKind<kField<M, row>.kind>;

/// What the varint means in a scalar field.
template <class M, std::size_t row>
[[gnu::always_inline]] inline TypeOf<M, row> fromVarint(std::uint64_t varint) {
  if constexpr (kField<M, row>.kind == Kind::sint32)
    return signedFromVarint(varint);
  else if constexpr (kField<M, row>.kind == Kind::boolean)
    return varint != 0;
  else
    return static_cast<TypeOf<M, row>>(varint);
}

/// Reads bytes, text or packed numbers behind their key, and gives where they end; null, with
/// nothing done, when they are unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline Position readInto(TypeOf<M, row>& read, Position at, Position end) {
  constexpr Kind kind = kField<M, row>.kind;
  std::size_t length = 0;
  at = content(at, end, length);
  if (!at) return nullptr;
  const Position stop = at + length;
  if constexpr (kind == Kind::bytes) {
    read = Data::createFromPadded(Bytes(at, length));
  } else if constexpr (kind == Kind::string) {
    read = make<String>(std::string_view(reinterpret_cast<const char*>(at), length));
  } else {
    auto& values = read.values;
    const std::size_t before = values.size();
    if (before == 0) values.reserve(length);  // a number takes a byte at least
    while (at < stop) {
      const auto [value, behind] = varint(at);
      if (!behind || behind > stop) {
        values.resize(before);
        return nullptr;
      }
      at = behind;
      if constexpr (kind == Kind::packedUint32)
        values.push_back(static_cast<std::uint32_t>(value));
      else
        values.push_back(signedFromVarint(value));
    }
  }
  return stop;
}

/// Reads the scalar field where it stands next. False: what stands there is unusual.
template <class M, std::size_t row, Level level>
[[gnu::always_inline]] inline bool readScalar(M& m, Position& at, Position end,
                                              std::uint64_t& has) {
  constexpr const Field& field = kField<M, row>;
  if (!isKeyAt<M, row>(at)) return true;
  const auto [value, behind] = varint(at + kKeySize<M, row>);
  if (!behind || (level == Level::payload && behind > end)) return false;
  at = behind;
  if constexpr (isRegistered<M>(field)) {
    logRegistered<M>(static_cast<std::uint32_t>(value));
  } else {
    has |= std::uint64_t{1} << field.number;
    field.template in<TypeOf<M, row>>(m) = fromVarint<M, row>(value);
  }
  return true;
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
template <class M, std::size_t row, Level level>
[[gnu::always_inline]] inline bool readNext(M& m, Position& at, Position end, std::uint64_t& has) {
  constexpr const Field& field = kField<M, row>;
  static_assert(field.kind <= Kind::boolean || !isRegistered<M>(field));
  if constexpr (field.kind <= Kind::boolean) {
    return readScalar<M, row, level>(m, at, end, has);
  } else if constexpr (field.kind == Kind::repeated) {
    return readElements<M, row>(m, at, end);
  } else {
    Position value = behindKey<M, row>(at, end);
    if (!value) return true;
    if constexpr (field.kind == Kind::message) {
      std::size_t length = 0;
      value = content(value, end, length);
      if (!value) return false;
      auto element = readElement<ElementOf<M, row>>(value, value + length);
      if (!element) return false;
      field.template in<Ref<AnyMessage>>(m) = std::move(element);
      at = value + length;
    } else {
      value = readInto<M, row>(field.template in<TypeOf<M, row>>(m), value, end);
      if (!value) return false;
      at = value;
    }
    return true;
  }
}

template <class M, Level level, std::size_t... rows>
[[gnu::always_inline]] inline void readRows(M& m, Position& at, Position end, std::uint64_t& has,
                                            std::index_sequence<rows...>) {
  (void)(readNext<M, rows, level>(m, at, end, has) && ...);
}

using DictionaryEntries = Elements<DictionaryEntry>;

/// Where a dictionary's next entry is made, and which so far hold an object.
struct Entries {
  DictionaryEntry* first;
  DictionaryEntry* next = first;
  Holders holders{};
  std::uint64_t registered = kNotThere;  // the value of the class's registered tag, of 32 bits

  static constexpr std::uint64_t kNotThere = ~std::uint64_t{0};

  /// Requires: a number, or text that lives as long as the program.
  [[gnu::always_inline]] void appendPlain(Literal key, Value value) {
    new (next++) DictionaryEntry{Value(key), std::move(value)};
  }
  [[gnu::always_inline]] void append(Literal key, Value value) {
    if (!value.isPlain()) holders.add(static_cast<std::size_t>(next - first));
    appendPlain(key, std::move(value));
  }
  /// Of the dictionary's own block. False where there is no object.
  template <class Object>
  [[gnu::always_inline]] bool appendInside(Literal key, const Object* object) {
    if (!object) return false;
    holders.add(static_cast<std::size_t>(next - first));
    appendPlain(key, Value::inside(object));
    return true;
  }
};

template <class M, std::size_t row>
inline constexpr Literal kKeyOf = kKey<FixedText<kField<M, row>.key.size()>(kField<M, row>.key)>;

/// Appends a scalar as a dictionary shows it: an enumeration by its name. False where the block, if
/// there is one, has no room.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool appendScalar(Entries& entries, TypeOf<M, row> value,
                                                Block* block) {
  constexpr Literal key = kKeyOf<M, row>;
  if constexpr (kField<M, row>.kind == Kind::enumeration) {
    constexpr EnumTable names = kField<M, row>.names;
    const std::string_view name = names.nameBeforeGaps(value);
    if (name.empty()) [[unlikely]] {
      entries.append(key, valueNamed(kField<M, row>.names, value, block));
      return entries.next[-1].value.kind() != Value::Kind::nothing;
    }
    entries.appendPlain(key, Value(Literal{name}));
  } else {
    entries.appendPlain(key, Value(value));
  }
  return true;
}

template <class Element>
[[nodiscard]] Value listOf(const MessageArray& array) {
  ListMaker list(array.elements.size());
  for (const auto& element : array.elements)
    list.append(Value(Unrolled<Element>::dictionary(*element)));
  return Value(list.made());
}

/// Appends the field's entry where it is present.
template <class M, std::size_t row>
[[gnu::always_inline]] inline void appendEntry(Entries& entries, const M& m, std::uint64_t has) {
  constexpr const Field& field = kField<M, row>;
  constexpr Literal key = kKeyOf<M, row>;
  using T = TypeOf<M, row>;
  const T& value = field.template in<T>(m);
  if constexpr (field.kind <= Kind::boolean) {
    if (has >> field.number & 1) (void)appendScalar<M, row>(entries, value, nullptr);
  } else if constexpr (field.kind == Kind::bytes || field.kind == Kind::string) {
    if (value) entries.append(key, Value(value));
  } else if constexpr (field.kind == Kind::message) {
    if (value) entries.append(key, Value(Unrolled<ElementOf<M, row>>::dictionary(*value)));
  } else if constexpr (field.kind == Kind::repeated) {
    if (value && !value->elements.empty()) entries.append(key, listOf<ElementOf<M, row>>(*value));
  } else if constexpr (field.kind == Kind::packedUint32) {
    if (!value.values.empty()) entries.append(key, Value(PBRepeatedUInt32NSArray(value)));
  } else {
    if (!value.values.empty()) entries.append(key, Value(PBRepeatedInt32NSArray(value)));
  }
}

template <class M, std::size_t... rows>
[[gnu::always_inline]] inline void appendEntries(Entries& entries, const M& m,
                                                 std::index_sequence<rows...>) {
  const std::uint64_t has = m.presence();
  (appendEntry<M, rows>(entries, m, has), ...);
}

// The same from the payload itself, for whoever wants no message, all in one block: whatever it
// holds, nothing is counted, and what is given up needs no end. A scalar that reaches too far is
// found when its message is read: at most the zeros behind the payload are read, and no key is 0.

/// The numbers of a packed field, which `next` gives until there are no more; null where there is
/// no room for `most`.
template <class Next>
[[gnu::always_inline]] inline Elements<Value>* listOfNumbers(Block& block, std::size_t most,
                                                             Next next) {
  auto* list = Elements<Value>::createIn(block, most);
  if (!list) return nullptr;
  Value* end = list->place();
  while (next(end)) ++end;
  list->endAt(end, block);
  return list;
}

template <class M, std::size_t... rows>
bool readEntries(Block& block, Entries& entries, Position& at, Position end,
                 std::index_sequence<rows...>);

/// The dictionary of the message between the two; null where something in it is unusual.
template <class M>
[[gnu::always_inline]] inline DictionaryEntries* readDictionary(Block& block, Position at,
                                                                Position end) {
  auto* dictionary = DictionaryEntries::createIn(block, kFields<M>.size());
  if (!dictionary) return nullptr;
  Entries entries{dictionary->place()};
  if (!readEntries<M>(block, entries, at, end, Rows<M>{}) || at != end) return nullptr;
  dictionary->setSize(entries.next, entries.holders, {});
  if constexpr (!kLogsNothing<M>)
    if (entries.registered != Entries::kNotThere)
      logRegistered<M>(static_cast<std::uint32_t>(entries.registered));
  return dictionary;
}

/// Appends the elements that stand next. False where something in them is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readList(Block& block, Entries& entries, Position& at,
                                            Position end) {
  std::size_t count = 0;
  std::size_t length = 0;
  for (Position next = at; (next = behindKey<M, row>(next, end)) != nullptr; ++count) {
    next = content(next, end, length);
    if (!next) return false;
    next += length;
  }
  if (count == 0) return true;
  auto* list = Elements<Value>::createIn(block, count);
  if (!entries.appendInside(kKeyOf<M, row>, list)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const Position element = content(behindKey<M, row>(at, end), end, length);
    at = element + length;
    auto* dictionary = readDictionary<ElementOf<M, row>>(block, element, at);
    if (!dictionary) return false;
    list->appendInside(Value::inside(dictionary));
  }
  return true;
}

/// Appends the field's entry where it stands next. False: what stands there is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readEntry(Block& block, Entries& entries, Position& at,
                                             Position end) {
  constexpr const Field& field = kField<M, row>;
  constexpr Literal key = kKeyOf<M, row>;
  if constexpr (field.kind == Kind::repeated) {
    return readList<M, row>(block, entries, at, end);
  } else if constexpr (field.kind <= Kind::boolean) {
    if (!isKeyAt<M, row>(at)) return true;
    const auto [value, behind] = varint(at + kKeySize<M, row>);
    if (!behind) return false;
    at = behind;
    if constexpr (isRegistered<M>(field)) {
      entries.registered = static_cast<std::uint32_t>(value);
      return true;
    } else {
      return appendScalar<M, row>(entries, fromVarint<M, row>(value), &block);
    }
  } else {
    Position value = behindKey<M, row>(at, end);
    if (!value) return true;
    std::size_t length = 0;
    value = content(value, end, length);
    if (!value) return false;
    at = value + length;
    if constexpr (field.kind == Kind::message) {
      return entries.appendInside(key, readDictionary<ElementOf<M, row>>(block, value, at));
    } else if constexpr (field.kind == Kind::bytes) {
      return entries.appendInside(key, Data::createFromPaddedIn(block, Bytes(value, length)));
    } else if constexpr (field.kind == Kind::string) {
      return entries.appendInside(key, String::createFromPaddedIn(block, Bytes(value, length)));
    } else {
      bool usual = true;
      const auto next = [&](Value* place) {
        if (value >= at) return false;
        const auto [number, behind] = varint(value);
        usual = behind && behind <= at;
        value = behind;
        if constexpr (field.kind == Kind::packedUint32)
          new (place) Value(static_cast<std::uint32_t>(number));
        else
          new (place) Value(signedFromVarint(number));
        return usual;
      };
      return length == 0 ||
             (entries.appendInside(key, listOfNumbers(block, length, next)) && usual);
    }
  }
}

template <class M, std::size_t... rows>
[[gnu::always_inline]] inline bool readEntries(Block& block, Entries& entries, Position& at,
                                               Position end, std::index_sequence<rows...>) {
  return (readEntry<M, rows>(block, entries, at, end) && ...);
}

/// How large a block the dictionaries of a class have needed so far.
template <class M>
inline std::atomic<std::uint32_t> blockSize{DictionaryEntries::bytes(kFields<M>.size())};

/// A dictionary that would need more is left to the message.
inline constexpr std::size_t kLargestBlock = 1 << 20;

}  // namespace unrolled

template <class M>
const std::uint8_t* Unrolled<M>::read(AnyMessage& message, const std::uint8_t* at,
                                      const std::uint8_t* end) {
  auto& m = static_cast<M&>(message);
  std::uint64_t has = 0;
  unrolled::readRows<M, unrolled::Level::payload>(m, at, end, has, unrolled::Rows<M>{});
  m.addHas(has);
  return at;
}

template <class M>
Dictionary Unrolled<M>::dictionary(const AnyMessage& message) {
  auto made = unrolled::DictionaryEntries::create(kFields<M>.size());
  unrolled::Entries entries{made->place()};
  unrolled::appendEntries(entries, static_cast<const M&>(message), unrolled::Rows<M>{});
  made->setSize(entries.next, {}, entries.holders);
  return Dictionary(std::move(made));
}

template <class M>
bool Unrolled<M>::readDictionary(const Data& payload, Dictionary& result) {
  const Bytes bytes = payload.bytes();
  auto& known = unrolled::blockSize<M>;
  for (std::size_t size = known.load(std::memory_order_relaxed);; size *= 2) {
    Block block(size);
    if (unrolled::readDictionary<M>(block, bytes.data(), bytes.data() + bytes.size())) [[likely]]
      return result = Dictionary(block), true;
    if (!block.isFull || 2 * size > unrolled::kLargestBlock) return false;
    // What is rarely that large is tried again each time.
    if (2 * size <= RecycledMemory::kLargest)
      known.store(static_cast<std::uint32_t>(2 * size), std::memory_order_relaxed);
  }
}

}  // namespace quorin
