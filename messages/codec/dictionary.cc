#include "messages/codec/unrolled.h"

namespace quorin {

Value valueNamed(const EnumTable& names, std::int32_t value, Block* block) {
  const auto name = names.nameOf(value);
  if (!name.empty()) return Value(Literal{name});
  const std::string number = "(unknown: " + std::to_string(value) + ")";
  if (!block) return Value(number);
  const String* text = String::createIn(*block, number);
  return text ? Value::inside(text) : Value();
}

Dictionary AnyMessage::dictionaryRepresentation() const { return table().dictionary(*this); }

std::string AnyMessage::description() const {
  return PBCodable::description() + " " + printed(dictionaryRepresentation());
}

}  // namespace quorin
