#include "messages/codec/AnyMessage.h"

namespace quorin {

namespace {

template <class Numbers, class WriteBare>
void writePacked(PBDataWriter& writer, std::uint32_t number, const Numbers& repeated,
                 WriteBare writeBare) {
  if (repeated.values.empty()) return;
  const PBWriterMark mark = PBDataWriterPlaceMark(writer, number);
  for (auto value : repeated.values) writeBare(writer, value, kPBNoKey);
  PBDataWriterRecallMark(writer, mark);
}

void writeField(const AnyMessage& m, const Field& field, PBDataWriter& writer) {
  const std::uint32_t number = field.number;
  const auto scalar = [&]<class T>(void (*write)(PBDataWriter&, T, std::uint32_t)) {
    if (m.has(number)) write(writer, field.in<T>(m), number);
  };
  const auto object = [&]<class T>(void (*write)(PBDataWriter&, const T&, std::uint32_t)) {
    if (const auto& value = field.in<Ref<T>>(m)) write(writer, *value, number);
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(PBDataWriterWriteUint64Field);
    case Kind::uint32: return scalar(PBDataWriterWriteUint32Field);
    case Kind::enumeration: return scalar(PBDataWriterWriteInt32Field);
    case Kind::sint32: return scalar(PBDataWriterWriteSint32Field);
    case Kind::boolean: return scalar(PBDataWriterWriteBOOLField);
    case Kind::bytes: return object(PBDataWriterWriteDataField);
    case Kind::string: return object(PBDataWriterWriteStringField);
    case Kind::message:
      if (const auto& value = field.in<Ref<AnyMessage>>(m))
        PBDataWriterWriteSubmessage(writer, *value, number);
      return;
    case Kind::repeated:
      if (const auto& array = field.in<Ref<MessageArray>>(m))
        for (const auto& element : array->elements)
          PBDataWriterWriteSubmessage(writer, *element, number);
      return;
    case Kind::packedUint32:
      return writePacked(writer, number, field.in<PBRepeatedUInt32>(m),
                         PBDataWriterWriteUint32Field);
    case Kind::packedSint32:
      return writePacked(writer, number, field.in<PBRepeatedInt32>(m),
                         PBDataWriterWriteSint32Field);
  }
}

}  // namespace

void AnyMessage::writeTo(PBDataWriter& writer) const {
  for (const Field& field : table().fields) writeField(*this, field, writer);
}

}  // namespace quorin
