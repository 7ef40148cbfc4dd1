#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "messages/codec/enum_table.h"
#include "platform/platform.h"

namespace quorin {

class AnyMessage;
struct MessageTable;

/// How a field stands on the wire and in memory. The scalars, one varint each, come first.
enum class Kind : std::uint8_t {
  uint64,
  uint32,
  enumeration,
  sint32,
  boolean,
  bytes,
  string,
  message,
  repeated,
  packedUint32,
  packedSint32
};

/// The elements of a repeated message field.
class MessageArray final : public Object {
 public:
  InlineVector<Ref<AnyMessage>, 8> elements;

  [[nodiscard]] bool isEqual(const Object& other) const override;
  [[nodiscard]] std::uint64_t hash() const override;
};

/// What a message stores a field of each kind as.
using TypesByKind =
    std::tuple<std::uint64_t, std::uint32_t, std::int32_t, std::int32_t, bool, Ref<Data>,
               Ref<String>, Ref<AnyMessage>, Ref<MessageArray>, PBRepeatedUInt32, PBRepeatedInt32>;
template <Kind kind>
using TypeOfKind = std::tuple_element_t<static_cast<std::size_t>(kind), TypesByKind>;

/// Where in its message a field is stored.
using Slot = std::variant<std::uint64_t AnyMessage::*, std::uint32_t AnyMessage::*,
                          std::int32_t AnyMessage::*, bool AnyMessage::*, Ref<Data> AnyMessage::*,
                          Ref<String> AnyMessage::*, Ref<AnyMessage> AnyMessage::*,
                          Ref<MessageArray> AnyMessage::*, PBRepeatedUInt32 AnyMessage::*,
                          PBRepeatedInt32 AnyMessage::*>;

/// One field of a message: a row of its class.
struct Field {
  std::uint32_t number;
  Kind kind;
  std::string_view key;
  std::string_view property;
  Slot slot;
  EnumTable names{};                      // of an enumeration
  const MessageTable* element = nullptr;  // of a nested message

  template <class T>
  [[nodiscard]] T& in(AnyMessage& message) const;
  template <class T>
  [[nodiscard]] const T& in(const AnyMessage& message) const;
};

/// Whether a class's reader cuts field numbers to 16 bits and asks the tag registry, or keeps the
/// whole number and asks nobody.
enum class KeyRule : std::uint8_t { cut, whole };

/// Presence bits are numbered by field.
inline constexpr std::size_t kFieldNumberLimit = 64;
inline constexpr std::uint8_t kNoRow = 0xff;

/// The rows of class `M` as straight code, made once in its folder's unrolled.cc.
template <class M>
struct Unrolled {
  /// One entry per present field, in field order, enumerations by name.
  static Dictionary dictionary(const AnyMessage& message);
  /// The dictionary of the message in the bytes, with one reference, which the caller owns. Null,
  /// with nothing done and no line written, where they are not what a modem usually sends, fields
  /// that ascend by number: the exact reader takes these. Requires: zeros behind the bytes, as
  /// behind a `Data`.
  static Elements* read(Bytes bytes);
};

/// A message class as its rows.
struct MessageTable {
  std::string_view name;
  std::span<const Field> fields;                       // ascending by number
  std::array<std::uint8_t, kFieldNumberLimit> rows{};  // field number -> row, or kNoRow
  KeyRule keyRule;
  std::uint32_t objectSize;  // bytes
  Ref<AnyMessage> (*make)();
  /// A message of the data, read at once; null where they make none.
  Ref<AnyMessage> (*makeWithData)(const Ref<Data>& data);
  Dictionary (*dictionary)(const AnyMessage& message);
  Elements* (*read)(Bytes bytes);

  /// The dictionary of a message's bytes, behind which zeros lie as behind a `Data`. False: they
  /// make none.
  [[nodiscard]] bool decode(Bytes bytes, Dictionary& result) const {
    Elements* usual = read(bytes);
    if (!usual) [[unlikely]]
      return decodeExactly(bytes, result);
    result = Dictionary(Ref<Elements>::owning(usual));
    return true;
  }
  /// The same by the exact reader, which needs no zeros.
  [[nodiscard]] bool decodeExactly(Bytes bytes, Dictionary& result) const;

  /// The field of this number, or null.
  [[nodiscard]] const Field* find(std::uint64_t number) const {
    if (number >= kFieldNumberLimit || rows[number] == kNoRow) return nullptr;
    return &fields[rows[number]];
  }
};

template <std::uint32_t number>
using Number = std::integral_constant<std::uint32_t, number>;

template <class M, std::uint32_t number>
concept HasRow = requires {
  M::field(Number<number>{});
};

/// The rows of message `M`, ascending, wherever in its class they stand.
template <class M, std::uint32_t... numbers>
consteval auto collectFields(std::integer_sequence<std::uint32_t, numbers...>) {
  std::array<Field, (std::size_t{HasRow<M, numbers>} + ...)> fields{};
  std::size_t next = 0;
  const auto append = [&]<std::uint32_t number>(Number<number> n) {
    if constexpr (HasRow<M, number>) fields[next++] = M::field(n);
  };
  (append(Number<numbers>{}), ...);
  return fields;
}

template <class M>
inline constexpr auto kFields =
    collectFields<M>(std::make_integer_sequence<std::uint32_t, kFieldNumberLimit>{});

template <class M, std::size_t row>
inline constexpr Field kField = kFields<M>[row];

template <class M>
using Rows = std::make_index_sequence<kFields<M>.size()>;

/// The keys of a class's dictionaries: a place for each row.
template <class M>
inline constexpr auto kKeys = []<std::size_t... rows>(std::index_sequence<rows...>) {
  return std::array{kKey<FixedText<kField<M, rows>.key.size()>(kField<M, rows>.key)>...};
}
(Rows<M>{});

template <class M>
inline constexpr MessageTable kTable = [] {
  MessageTable table{M::kName,
                     kFields<M>,
                     {},
                     M::kKeyRule,
                     sizeof(M),
                     [] { return Ref<AnyMessage>(make<M>()); },
                     M::makeWithData,
                     Unrolled<M>::dictionary,
                     Unrolled<M>::read};
  table.rows.fill(kNoRow);
  for (std::size_t row = 0; row < table.fields.size(); ++row)
    table.rows[table.fields[row].number] = static_cast<std::uint8_t>(row);
  return table;
}();

}  // namespace quorin
