#pragma once

#include "messages/codec/field_table.h"

namespace quorin {

/// What all message classes share: presence bits, and every operation as one loop over the class's
/// rows. A message belongs to one thread.
class AnyMessage : public PBCodable {
 public:
  [[nodiscard]] virtual const MessageTable& table() const = 0;

  /// Reads fields until the reader's end, adding to what the message holds. False when the bytes
  /// are malformed; what was read before stays.
  [[nodiscard]] bool readFrom(PBDataReader& reader) final;
  /// Writes every present field, ascending by number.
  void writeTo(PBDataWriter& writer) const final;
  /// One entry per present field, in field order, enumerations by name.
  [[nodiscard]] Dictionary dictionaryRepresentation() const final;
  /// True only for a message of exactly this class with the same fields present and equal.
  [[nodiscard]] bool isEqual(const Object& other) const final;
  [[nodiscard]] std::uint64_t hash() const final;
  [[nodiscard]] std::string_view className() const final { return table().name; }
  /// "<Class: 0xaddress>", a blank, and the printed dictionary.
  [[nodiscard]] std::string description() const final;

  [[nodiscard]] bool has(std::uint32_t number) const { return _has >> number & 1; }
  void setHas(std::uint32_t number, bool present) {
    _has = (_has & ~(std::uint64_t{1} << number)) | std::uint64_t{present} << number;
  }

  /// One bit per present scalar field, by its number.
  [[nodiscard]] std::uint64_t presence() const { return _has; }
  /// Marks the scalar fields of these bits as present.
  void addHas(std::uint64_t bits) { _has |= bits; }

  /// A message of the same class that shares no object with this one.
  [[nodiscard]] Ref<AnyMessage> deepCopy() const;

 protected:
  /// Each requires: both messages are of one class.
  void copyFieldsTo(AnyMessage& target) const;
  void mergeFieldsFrom(const AnyMessage& other);

 private:
  enum class Reading { goesOn, ends, failed };
  Reading readOne(const MessageTable& rows, PBDataReader& reader);
  bool readField(const Field& field, std::uint8_t wireType, PBDataReader& reader);

  std::uint64_t _has = 0;  // one bit per scalar field, by its number
};

/// Appends an element, making the array on first use.
inline void appendElement(Ref<MessageArray>& array, Ref<AnyMessage> element) {
  if (!array) array = make<MessageArray>();
  array->elements.push_back(std::move(element));
}

/// The typed face of the operations that take or give a message of the same class.
template <class M>
class Message : public AnyMessage {
 public:
  static constexpr KeyRule kKeyRule = KeyRule::cut;

  [[nodiscard]] const MessageTable& table() const final { return kTable<M>; }
  /// Copies every present field into `target`; objects are shared.
  void copyTo(M& target) const { copyFieldsTo(target); }
  /// A copy that shares no object with this message.
  [[nodiscard]] Ref<M> copyWithZone() const { return Ref<M>(static_cast<M*>(deepCopy().get())); }
  /// Takes over every field that is present in `other`; objects are shared, repeated fields grow.
  void mergeFrom(const M& other) { mergeFieldsFrom(other); }

 protected:
  template <class T>
  static constexpr Slot slot(T M::*member) {
    return static_cast<T AnyMessage::*>(member);
  }
};

}  // namespace quorin
