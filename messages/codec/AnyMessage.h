#pragma once

#include "messages/codec/field_table.h"

namespace quorin {

/// What all message classes share: presence bits, and every operation as one loop over the class's
/// rows. A message belongs to one thread.
class AnyMessage : public PBCodable {
 public:
  [[nodiscard]] const MessageTable& table() const { return _table; }

  /// The same as an object's. A message whose fields were never touched holds nothing in them, and
  /// ends without its class's destructor.
  void release() const {
    if (!dropReference()) return;
    if (_fields != Fields::untouched) return delete this;
    _read.~Dictionary();
    giveMemory(const_cast<AnyMessage*>(this), _table.objectSize);
  }

  /// The same as the base's, for less where the message is new and the payload usual.
  [[nodiscard]] bool initWithData(const Ref<Data>& data) { return initWith(_table.read, data); }
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

  [[nodiscard]] bool has(std::uint32_t number) const { return presence() >> number & 1; }
  void setHas(std::uint32_t number, bool present) {
    unfold();
    _has = (_has & ~(std::uint64_t{1} << number)) | std::uint64_t{present} << number;
  }

  /// One bit per present scalar field, by its number.
  [[nodiscard]] std::uint64_t presence() const {
    unfold();
    return _has;
  }

  /// A message of the same class that shares no object with this one.
  [[nodiscard]] Ref<AnyMessage> deepCopy() const;

 protected:
  explicit AnyMessage(const MessageTable& table) : _table(table) {}

  /// The same as `initWithData`, by this reader of what is usual.
  [[nodiscard]] [[gnu::always_inline]] bool initWith(decltype(MessageTable::read) read,
                                                     const Ref<Data>& data) {
    return (data && takeWhole(read, data->bytes())) || initExactly(data.get());
  }
  /// The same, field by field.
  [[nodiscard]] bool initExactly(const Data* data) {
    PBDataReader reader(data);
    return readFields(reader);
  }
  /// A new message takes over what was read.
  [[gnu::always_inline]] void startWith(Ref<Elements> read) {
    new (&_read) Dictionary(std::move(read));
  }

  /// Through this is every field asked for: until then, what was read is kept as its dictionary.
  template <class T>
  T& unfolded(T& field) const {
    unfold();
    return field;
  }
  /// Each requires: both messages are of one class.
  void copyFieldsTo(AnyMessage& target) const;
  void mergeFieldsFrom(const AnyMessage& other);

 private:
  friend struct Field;
  void unfold() const {
    if (_fields != Fields::made) const_cast<AnyMessage*>(this)->unfoldRead();
  }
  void unfoldRead();
  /// A new message takes what is usual as its dictionary. Requires: bytes of a `Data`.
  [[gnu::always_inline]] bool takeWhole(decltype(MessageTable::read) read, Bytes bytes) {
    if (_fields != Fields::untouched || !_read.empty()) return false;
    auto usual = Ref<Elements>::owning(read(bytes));
    if (!usual) return false;
    startWith(std::move(usual));
    return true;
  }
  /// Whatever else comes is read field by field.
  bool readFields(PBDataReader& reader);
  void take(const Field& field, const Value& value);
  enum class Reading { goesOn, ends, failed };
  Reading readOne(const MessageTable& rows, PBDataReader& reader);
  bool readField(const Field& field, std::uint8_t wireType, PBDataReader& reader);

  const MessageTable& _table;
  enum class Fields : std::uint8_t { untouched, begun, made } _fields = Fields::untouched;
  Dictionary _read;        // until the fields are made: all that it holds
  std::uint64_t _has = 0;  // one bit per scalar field, by its number
};

template <class T>
T& Field::in(AnyMessage& message) const {
  message.unfold();
  return message.*std::get<T AnyMessage::*>(slot);
}
template <class T>
const T& Field::in(const AnyMessage& message) const {
  message.unfold();
  return message.*std::get<T AnyMessage::*>(slot);
}

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

  Message() : AnyMessage(kTable<M>) {}
  /// The same, by the class's own reader.
  [[nodiscard]] bool initWithData(const Ref<Data>& data) {
    return initWith(Unrolled<M>::read, data);
  }
  /// A new message of the data; null where they make none.
  [[nodiscard]] static Ref<AnyMessage> makeWithData(const Ref<Data>& data) {
    auto usual = Ref<Elements>::owning(data ? Unrolled<M>::read(data->bytes()) : nullptr);
    auto message = make<M>();
    if (usual) [[likely]]
      message->startWith(std::move(usual));
    else if (!message->initExactly(data.get()))
      return nullptr;
    return message;
  }
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
