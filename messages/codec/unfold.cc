#include <charconv>

#include "messages/codec/unrolled.h"

namespace quorin {

namespace {

/// The number of an enumeration's value, from what a dictionary shows for it.
std::int32_t numberOf(const EnumTable& names, std::string_view text) {
  const auto row = std::ranges::find(names.names, text, &EnumName::name);
  if (row != names.names.end()) return row->value;
  std::int32_t number = 0;
  std::from_chars(text.data() + kUnnamed.size(), text.data() + text.size(), number);
  return number;
}

template <class Numbers>
void takeNumbers(Numbers& numbers, const List& list) {
  numbers.values.clear();
  for (const Value& value : list)
    numbers.values.push_back(
        static_cast<typename decltype(numbers.values)::value_type>(*value.integer()));
}

}  // namespace

void AnyMessage::unfoldRead() {
  const MessageTable& rows = table();
  _fields = Fields::made;
  try {
    for (const auto& [key, value] : _read)
      take(*std::ranges::find(rows.fields, key.text, &Field::key), value);
  } catch (...) {
    _fields = Fields::begun;
    throw;
  }
  _read = Dictionary();
}

void AnyMessage::take(const Field& field, const Value& value) {
  const auto scalar = [&]<class T>(T number) {
    setHas(field.number, true);
    field.in<T>(*this) = number;
  };
  const auto element = [&](const Value& dictionary) {
    auto made = field.element->make();
    made->_read = dictionary.dictionary();
    return made;
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(value.natural());
    case Kind::uint32: return scalar(static_cast<std::uint32_t>(value.natural()));
    case Kind::enumeration: return scalar(numberOf(field.names, value.text()));
    case Kind::sint32: return scalar(static_cast<std::int32_t>(*value.integer()));
    case Kind::boolean: return scalar(value.boolean());
    case Kind::bytes: field.in<Ref<Data>>(*this) = value.data(); return;
    case Kind::string: field.in<Ref<String>>(*this) = value.string(); return;
    case Kind::message: field.in<Ref<AnyMessage>>(*this) = element(value); return;
    case Kind::repeated: {
      auto array = make<MessageArray>();
      for (const Value& dictionary : value.list()) array->elements.push_back(element(dictionary));
      field.in<Ref<MessageArray>>(*this) = std::move(array);
      return;
    }
    case Kind::packedUint32: return takeNumbers(field.in<PBRepeatedUInt32>(*this), value.list());
    case Kind::packedSint32: return takeNumbers(field.in<PBRepeatedInt32>(*this), value.list());
  }
}

}  // namespace quorin
