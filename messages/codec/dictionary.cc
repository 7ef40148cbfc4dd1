#include "messages/codec/unrolled.h"

namespace quorin {

Value valueNamed(Block& block, const EnumTable& names, std::int32_t value) {
  const auto name = names.nameOf(value);
  if (!name.empty()) return Value(Literal{name});
  const String* text = String::createIn(block, "(unknown: " + std::to_string(value) + ")");
  return text ? Value::inside(text) : Value();
}

Dictionary AnyMessage::dictionaryRepresentation() const { return table().dictionary(*this); }

std::string AnyMessage::description() const {
  return PBCodable::description() + " " + printed(dictionaryRepresentation());
}

}  // namespace quorin
