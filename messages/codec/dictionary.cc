#include "messages/codec/unrolled.h"

namespace quorin {

Value valueUnnamed(std::int32_t value, Block* block) {
  const std::string number = std::string(kUnnamed) + std::to_string(value) + ")";
  if (!block) return Value(number);
  const String* text = String::createIn(*block, number);
  return text ? Value::inside(text) : Value();
}

Elements* unrolled::largerList(Block& block, const Elements* list) {
  const std::span<const Value> values = list->full();
  Elements* larger = Elements::createIn(block, 2 * values.size());
  if (!larger) return nullptr;
  for (const Value& value : values) larger->appendInside(Value::plain(value));
  return larger;
}

bool MessageTable::decodeExactly(Bytes bytes, Dictionary& result) const {
  const auto message = make();
  PBDataReader reader(bytes);
  if (!message->readFrom(reader)) return false;
  result = message->dictionaryRepresentation();
  return true;
}

Dictionary AnyMessage::dictionaryRepresentation() const {
  return _fields == Fields::made ? _table.dictionary(*this) : _read;
}

std::string AnyMessage::description() const {
  return PBCodable::description() + " " + printed(dictionaryRepresentation());
}

}  // namespace quorin
