#include "messages/codec/AnyMessage.h"

namespace quorin {

namespace {

Value nameOf(const EnumTable& names, std::int32_t value) {
  const auto name = names.nameOf(value);
  return name.empty() ? Value("(unknown: " + std::to_string(value) + ")") : Value(Literal{name});
}

List listOf(const MessageArray& array) {
  List list;
  list.reserve(array.elements.size());
  for (const auto& element : array.elements)
    list.append(Value(element->dictionaryRepresentation()));
  return list;
}

void appendEntry(Dictionary& dictionary, const Field& field, const AnyMessage& m) {
  const auto append = [&](Value value) { dictionary.append(Literal{field.key}, std::move(value)); };
  const auto scalar = [&]<class T>(T) {
    if (m.has(field.number)) append(Value(field.in<T>(m)));
  };
  const auto object = [&]<class T>(Ref<T>) {
    if (const auto& value = field.in<Ref<T>>(m)) append(Value(value));
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(std::uint64_t{});
    case Kind::uint32: return scalar(std::uint32_t{});
    case Kind::enumeration:
      if (m.has(field.number)) append(nameOf(field.names, field.in<std::int32_t>(m)));
      return;
    case Kind::sint32: return scalar(std::int32_t{});
    case Kind::boolean: return scalar(bool{});
    case Kind::bytes: return object(Ref<Data>{});
    case Kind::string: return object(Ref<String>{});
    case Kind::message:
      if (const auto& message = field.in<Ref<AnyMessage>>(m))
        append(Value(message->dictionaryRepresentation()));
      return;
    case Kind::repeated:
      if (const auto& array = field.in<Ref<MessageArray>>(m); array && !array->elements.empty())
        append(Value(listOf(*array)));
      return;
    case Kind::packedUint32:
      if (const auto& numbers = field.in<PBRepeatedUInt32>(m); !numbers.values.empty())
        append(Value(PBRepeatedUInt32NSArray(numbers)));
      return;
    case Kind::packedSint32:
      if (const auto& numbers = field.in<PBRepeatedInt32>(m); !numbers.values.empty())
        append(Value(PBRepeatedInt32NSArray(numbers)));
      return;
  }
}

}  // namespace

Dictionary AnyMessage::dictionaryRepresentation() const {
  Dictionary dictionary;
  dictionary.reserve(table().fields.size());
  for (const Field& field : table().fields) appendEntry(dictionary, field, *this);
  return dictionary;
}

std::string AnyMessage::description() const {
  return PBCodable::description() + " " + printed(dictionaryRepresentation());
}

}  // namespace quorin
