#include "tests/support/wire_properties.h"

namespace quorin::test {

std::string brokenWireProperty(const MessageTable& table, Bytes payload) {
  // A copy of its own exact size lets the address sanitizer see a read past the end.
  const Ref<Data> data = make<Data>(payload);
  const auto message = table.make();
  const bool ok = message->initWithData(data);
  const Dictionary dictionary = message->dictionaryRepresentation();
  PBDataWriter writer;
  message->writeTo(writer);

  const auto again = table.make();
  if (!again->initWithData(make<Data>(writer.bytes()))) return "what was written cannot be read";
  if (!again->isEqual(*message)) return "what was read again is not equal";
  if (again->hash() != message->hash()) return "equal messages have different hashes";
  if (!(again->dictionaryRepresentation() == dictionary)) return "their dictionaries differ";
  if (!message->deepCopy()->isEqual(*message)) return "the copy is not equal";
  if (ok && payload.empty() && !dictionary.empty()) return "a field came from nothing";
  return "";
}

}  // namespace quorin::test
