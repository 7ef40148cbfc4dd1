#include "messages/codec/unrolled.h"

namespace quorin {

Value valueNamed(const EnumTable& names, std::int32_t value) {
  const auto name = names.nameOf(value);
  return name.empty() ? Value("(unknown: " + std::to_string(value) + ")") : Value(Literal{name});
}

Dictionary AnyMessage::dictionaryRepresentation() const { return table().dictionary(*this); }

std::string AnyMessage::description() const {
  return PBCodable::description() + " " + printed(dictionaryRepresentation());
}

}  // namespace quorin
