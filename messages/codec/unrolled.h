#pragma once

// The rows of a class walked by the compiler: straight code for what a modem usually sends, a
// message whose fields ascend. Whatever else comes is left to the exact reader, which is the truth.

#include <atomic>
#include <bit>
#include <cstring>

#include "messages/codec/AnyMessage.h"
#include "messages/codec/usual_ranges.h"
#include "metrics/registry/KBBMetricUtility.h"

namespace quorin {

/// Zigzag with an arithmetic shift: meant, so that an encoded bit 31 is read as a sign.
inline std::int32_t signedFromVarint(std::uint64_t varint) {
  const auto n = static_cast<std::int32_t>(static_cast<std::uint32_t>(varint));
  return -(n & 1) ^ (n >> 1);
}

/// How the text of a value without a name begins, which its number and ")" follow.
inline constexpr std::string_view kUnnamed = "(unknown: ";

/// What a dictionary shows for a value of an enumeration that has no name: in the block, if there
/// is one, and then nothing where that has no room.
[[nodiscard]] Value valueUnnamed(std::int32_t value, Block* block);

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

/// The number of these seven bits a byte.
[[gnu::always_inline]] inline std::uint64_t fromGroups(std::uint64_t word) {
  word -= (word & 0x7f007f007f007f00) >> 1;        // groups of 14 bits
  word -= ((word & 0x3fff00003fff0000) >> 2) * 3;  // of 28
  return word >> 32 << 28 | static_cast<std::uint32_t>(word);
}

/// Of any number of bytes.
[[gnu::noinline]] inline Varint longVarint(Position at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  const std::uint64_t ends = ~word & 0x8080808080808080;
  if (ends == 0) return {0, nullptr};
  word &= ends ^ (ends - 1);  // up to the first byte that announces no other
  return {fromGroups(word & 0x7f7f7f7f7f7f7f7f),
          at + (static_cast<unsigned>(std::countr_zero(ends)) / 8 + 1)};
}

/// The same position as one whose bytes nobody has read: what is unusual reads them again, so that
/// the usual way keeps no copy for it.
[[gnu::always_inline]] inline Position anew(Position at) {
  asm("" : "+r"(at));
  return at;
}

/// Reads a varint; false when it takes nine or ten bytes.
[[gnu::always_inline]] inline bool readVarint(Position& at, std::uint64_t& value) {
  value = *at;
  if (value < 0x80) [[likely]]
    return ++at, true;
  const Varint read = longVarint(anew(at));
  value = read.value;
  at = read.behind;
  return at != nullptr;
}

/// A varint where six bytes are usual, as of milliseconds since 1970 until the year 2109.
[[gnu::noinline]] inline Varint timeVarint(Position at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  if ((word & 0x808080808080) != 0x008080808080) [[unlikely]]
    return longVarint(at);
  return {fromGroups(word & 0x7f7f7f7f7f7f), at + 6};
}

/// A varint that usually takes so many bytes or one less: no branch that would have to guess which.
template <unsigned bytes>
[[gnu::always_inline]] inline bool readVarintOf(Position& at, std::uint64_t& value) {
  static_assert(bytes == 2 || bytes == 3);
  constexpr unsigned kLast = 7 * (bytes - 1);                // the first bit of the last group
  constexpr std::uint32_t kMore = 0x80u << 8 * (bytes - 1);  // announces a byte too many
  constexpr std::uint32_t kSure = bytes == 3 ? 0x80 : 0;     // announces one that is surely there
  std::conditional_t<bytes == 2, std::uint16_t, std::uint32_t> loaded = 0;
  std::memcpy(&loaded, at, sizeof loaded);
  const std::uint32_t word = loaded;
  if ((word & (kMore | kSure)) == kSure) [[likely]] {
    const std::uint32_t longer = word >> (8 * (bytes - 1) - 1) & 1;
    value = (word & 0x7f) | (word >> (bytes - 1) & 0x7f << kLast) * longer;
    if constexpr (bytes == 3) value |= word >> 1 & 0x3f80;
    at += longer + bytes - 1;
    return true;
  }
  at = anew(at);
  return readVarint(at, value);
}

/// How many bytes the number of this field takes, as its largest usual one does.
template <class M, std::size_t row>
inline constexpr unsigned kUsualBytes = usualBytes(M::kName, kField<M, row>);

template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readScalar(Position& at, std::uint64_t& value) {
  if constexpr (kField<M, row>.kind == Kind::uint64) {
    const Varint read = timeVarint(at);
    value = read.value;
    at = read.behind;
    return at != nullptr;
  } else if constexpr (constexpr unsigned bytes = kUsualBytes<M, row>; bytes > 1) {
    return readVarintOf<bytes>(at, value);
  } else {
    return readVarint(at, value);
  }
}

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

/// Goes behind this field, whose key stands there, and finds its content. False: that is not all
/// there.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readContent(Position& at, Position end, Position& content) {
  std::uint64_t length = 0;
  at += kKeySize<M, row>;
  if (!readVarint(at, length)) return false;
  content = at;
  at += length;  // of 56 bits at most: an address does not run over
  return at <= end;
}

/// A registered tag's value is read, logged and dropped.
template <class M>
inline constexpr auto isRegistered = [](const Field& field) {
  return M::kKeyRule == KeyRule::cut &&
         KBBMetricUtility::isTag(static_cast<std::uint16_t>(field.number));
};

/// What is given up is read again, which must not repeat a log line.
template <class M>
inline constexpr bool kLogsNothing = std::ranges::none_of(kFields<M>, isRegistered<M>);

/// Writes the lines of the class's registered tag, of which it has one at most.
template <class M>
void logRegistered(std::uint32_t value) {
  static_assert(std::ranges::count_if(kFields<M>, isRegistered<M>) == 1);
  constexpr auto field = std::ranges::find_if(kFields<M>, isRegistered<M>);
  (void)KBBMetricUtility::isValidMetricIdTag(field->number, M::kName);
  logUnknownTag(field->number, value);
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

/// The values of a dictionary that is made: where they stand, at which places there are none, and
/// at which there is text that was made for them.
struct Slots {
  Value* first;
  std::uint64_t absent = 0;
  std::uint64_t made = 0;
  std::uint64_t registered = kNotThere;  // the value of the class's registered tag, of 32 bits

  static constexpr std::uint64_t kNotThere = ~std::uint64_t{0};

  [[gnu::always_inline]] void put(std::size_t place, Value value) {
    new (first + place) Value(std::move(value));
  }
  [[gnu::always_inline]] void leaveOut(std::size_t place) { absent |= std::uint64_t{1} << place; }
};

/// The places of a class's dictionaries where an object stands, if anything.
template <class M>
inline constexpr std::uint64_t kObjectPlaces = [] {
  std::uint64_t places = 0;
  for (std::size_t row = 0; row < kFields<M>.size(); ++row)
    if (kFields<M>[row].kind > Kind::boolean) places |= std::uint64_t{1} << row;
  return places;
}();

template <class M>
[[gnu::always_inline]] inline std::uint64_t present(const Slots& slots) {
  constexpr std::size_t unused = 64 - kFields<M>.size();
  return ~slots.absent << unused >> unused;
}
template <class M>
[[gnu::always_inline]] inline Places holders(const Slots& slots) {
  return Places::of((present<M>(slots) & kObjectPlaces<M>) | slots.made);
}

/// The names of a row's values, padded.
template <class M, std::size_t row>
inline constexpr auto kNameTexts = [] {
  constexpr auto names = kField<M, row>.names.names;
  constexpr std::size_t longest = std::ranges::max(names, {}, [](const EnumName& name) {
                                    return name.name.size();
                                  }).name.size();
  std::array<decltype(paddedText<longest>("")), names.size()> texts{};
  for (std::size_t i = 0; i < names.size(); ++i) texts[i] = paddedText<longest>(names[i].name);
  return texts;
}();

/// The same as values, one a number from the first on; nothing where there is a gap.
template <class M, std::size_t row>
inline constexpr auto kNames = [] {
  constexpr auto names = kField<M, row>.names.names;
  constexpr std::size_t count = static_cast<std::size_t>(names.back().value - names[0].value) + 1;
  static_assert(count < 1024, "such gaps want another table");
  std::array<Value, count> values;
  for (std::size_t i = 0; i < names.size(); ++i)
    values[static_cast<std::size_t>(names[i].value - names[0].value)] =
        Value(Literal{{kNameTexts<M, row>[i].data(), names[i].name.size()}, true});
  return values;
}();

/// An enumeration as its name. False where the block, if there is one, has no room.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool putNamed(Slots& slots, std::int32_t value, Block* block) {
  constexpr auto& rows = kField<M, row>.names.names;
  if constexpr (!rows.empty()) {
    constexpr const auto& names = kNames<M, row>;
    constexpr bool hasGaps = names.size() != rows.size();
    const auto distance = static_cast<std::uint64_t>(std::int64_t{value} - rows[0].value);
    if (distance < names.size()) [[likely]] {
      const Value& name = names[distance];
      if (!hasGaps || name.kind() != Value::Kind::nothing) [[likely]]
        return slots.first[row].becomeOld(name), true;
    }
  }
  slots.made |= std::uint64_t{1} << row;
  slots.put(row, valueUnnamed(value, block));
  return slots.first[row].kind() != Value::Kind::nothing;
}

/// Puts a scalar as a dictionary shows it. False where the block, if there is one, has no room.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool putScalar(Slots& slots, TypeOf<M, row> value, Block* block) {
  if constexpr (kField<M, row>.kind == Kind::enumeration)
    return putNamed<M, row>(slots, value, block);
  else
    return slots.put(row, Value(value)), true;
}

[[nodiscard]] inline Value listOf(const MessageArray& array) {
  ListMaker list(array.elements.size());
  for (const auto& element : array.elements)
    list.append(Value(element->dictionaryRepresentation()));
  return Value(list.made());
}

/// Puts the field's value where it is present.
template <class M, std::size_t row>
void putField(Slots& slots, const M& m, std::uint64_t has) {
  constexpr const Field& field = kField<M, row>;
  using T = TypeOf<M, row>;
  const T& value = field.template in<T>(m);
  if constexpr (field.kind <= Kind::boolean) {
    if (has >> field.number & 1) return (void)putScalar<M, row>(slots, value, nullptr);
  } else if constexpr (field.kind == Kind::bytes || field.kind == Kind::string) {
    if (value) return slots.put(row, Value(value));
  } else if constexpr (field.kind == Kind::message) {
    if (value) return slots.put(row, Value(value->dictionaryRepresentation()));
  } else if constexpr (field.kind == Kind::repeated) {
    if (value && !value->elements.empty()) return slots.put(row, listOf(*value));
  } else if constexpr (field.kind == Kind::packedUint32) {
    if (!value.values.empty()) return slots.put(row, Value(PBRepeatedUInt32NSArray(value)));
  } else {
    if (!value.values.empty()) return slots.put(row, Value(PBRepeatedInt32NSArray(value)));
  }
  slots.leaveOut(row);
}

// The same from the payload itself, all in one block: whatever it holds, nothing is counted, and
// what is given up needs no end. A scalar that reaches too far is found when its message is read:
// at most the zeros behind the payload are read, and no key is 0.

template <class M, std::size_t... rows>
bool readFields(Block& block, Slots& slots, Position& at, Position end,
                std::index_sequence<rows...>);

/// The dictionary of the message between the two; null where something in it is unusual.
template <class M>
[[gnu::always_inline]] inline Elements* readMessage(Block& block, Position at, Position end) {
  void* memory = block.take(Elements::bytes(kFields<M>.size()));
  if (!memory) return nullptr;
  Slots slots{Elements::firstIn(memory)};
  if (!readFields<M>(block, slots, at, end, Rows<M>{}) || at != end) return nullptr;
  if constexpr (!kLogsNothing<M>)
    if (slots.registered != Slots::kNotThere)
      logRegistered<M>(static_cast<std::uint32_t>(slots.registered));
  return new (memory) Elements(block, kKeys<M>, present<M>(slots), holders<M>(slots));
}

/// A full list of dictionaries in the same block, with room for as many more; null where that has
/// no room. The smaller one's memory stays unused.
[[nodiscard]] Elements* largerList(Block& block, const Elements* list);

/// Puts the elements that stand next. False where something in them is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readList(Block& block, Slots& slots, Position& at,
                                            Position end) {
  static_assert(kLogsNothing<ElementOf<M, row>>);
  constexpr std::size_t kFew = 8;
  Elements* list = Elements::createIn(block, kFew);
  if (!list) return false;
  Value* next = list->first();
  const Value* last = next + kFew;
  do {
    Position element = nullptr;
    if (!readContent<M, row>(at, end, element)) return false;
    const Elements* dictionary = readMessage<ElementOf<M, row>>(block, element, at);
    if (!dictionary) return false;
    if (next == last) [[unlikely]] {
      list = largerList(block, list);
      if (!list) return false;
      next = list->first() + list->size();
      last = next + list->room();
    }
    new (next++) Value(Value::inside(Value::Kind::dictionary, dictionary));
  } while (at < end && isKeyAt<M, row>(at));
  list->setInside(static_cast<std::size_t>(next - list->first()));
  slots.put(row, Value::inside(Value::Kind::list, list));
  return true;
}

/// Puts the numbers of a packed field. False where something in them is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readNumbers(Block& block, Slots& slots, Position at,
                                               Position end) {
  if (at == end) return slots.leaveOut(row), true;
  Elements* list = Elements::createIn(block, static_cast<std::size_t>(end - at));
  if (!list) return false;
  Value* next = list->first();
  while (at < end) {
    std::uint64_t number = 0;
    if (!readVarint(at, number)) return false;
    if constexpr (kField<M, row>.kind == Kind::packedUint32)
      new (next++) Value(static_cast<std::uint32_t>(number));
    else
      new (next++) Value(signedFromVarint(number));
  }
  list->endAt(next, block);
  slots.put(row, Value::inside(Value::Kind::list, list));
  return at == end;
}

/// Puts the field's value where it stands next. False: what stands there is unusual.
template <class M, std::size_t row>
[[gnu::always_inline]] inline bool readField(Block& block, Slots& slots, Position& at,
                                             Position end) {
  constexpr const Field& field = kField<M, row>;
  static_assert(field.kind <= Kind::boolean || !isRegistered<M>(field));
  if constexpr (field.kind <= Kind::boolean) {
    if (!isKeyAt<M, row>(at)) [[unlikely]]
      return at = anew(at), slots.leaveOut(row), true;
    std::uint64_t value = 0;
    at += kKeySize<M, row>;
    if (!readScalar<M, row>(at, value)) return false;
    if constexpr (isRegistered<M>(field))
      return slots.leaveOut(row), slots.registered = static_cast<std::uint32_t>(value), true;
    else
      return putScalar<M, row>(slots, fromVarint<M, row>(value), &block);
  } else {
    if (at >= end || !isKeyAt<M, row>(at)) [[unlikely]]
      return at = anew(at), slots.leaveOut(row), true;
    if constexpr (field.kind == Kind::repeated) {
      return readList<M, row>(block, slots, at, end);
    } else {
      Position value = nullptr;
      if (!readContent<M, row>(at, end, value)) return false;
      const auto putInside = [&](const auto* object, auto... kind) {
        if (object) slots.put(row, Value::inside(kind..., object));
        return object != nullptr;
      };
      if constexpr (field.kind == Kind::message) {
        static_assert(kLogsNothing<ElementOf<M, row>>);
        return putInside(readMessage<ElementOf<M, row>>(block, value, at), Value::Kind::dictionary);
      } else if constexpr (field.kind == Kind::bytes) {
        return putInside(Data::createFromPaddedIn(block, Bytes(value, at)));
      } else if constexpr (field.kind == Kind::string) {
        return putInside(String::createFromPaddedIn(block, Bytes(value, at)));
      } else {
        return readNumbers<M, row>(block, slots, value, at);
      }
    }
  }
}

template <class M, std::size_t... rows>
[[gnu::always_inline]] inline bool readFields(Block& block, Slots& slots, Position& at,
                                              Position end, std::index_sequence<rows...>) {
  return (readField<M, rows>(block, slots, at, end) && ...);
}

/// How large a block the dictionaries of a class have needed so far.
template <class M>
inline std::atomic<std::uint32_t> blockSize{Elements::bytes(kFields<M>.size())};

/// A dictionary that would need more is left to the exact reader.
inline constexpr std::size_t kLargestBlock = 1 << 20;

}  // namespace unrolled

template <class M>
Dictionary Unrolled<M>::dictionary(const AnyMessage& message) {
  auto made = Elements::create(Keys(kKeys<M>));
  unrolled::Slots slots{made->first()};
  const auto& m = static_cast<const M&>(message);
  const std::uint64_t has = m.presence();
  [&]<std::size_t... rows>(std::index_sequence<rows...>) {
    (unrolled::putField<M, rows>(slots, m, has), ...);
  }
  (Rows<M>{});
  made->setPresent(unrolled::present<M>(slots), {}, unrolled::holders<M>(slots));
  return Dictionary(std::move(made));
}

template <class M>
Elements* Unrolled<M>::read(Bytes bytes) {
  auto& known = unrolled::blockSize<M>;
  for (std::size_t size = known.load(std::memory_order_relaxed);; size *= 2) {
    Block block(size);
    Elements* made = unrolled::readMessage<M>(block, bytes.data(), bytes.data() + bytes.size());
    if (made) [[likely]]
      return made->becomeWhole(block);
    if (!block.isFull || 2 * size > unrolled::kLargestBlock) return nullptr;
    // What is rarely that large is tried again each time.
    if (2 * size <= RecycledMemory::kLargest)
      known.store(static_cast<std::uint32_t>(2 * size), std::memory_order_relaxed);
  }
}

}  // namespace quorin
