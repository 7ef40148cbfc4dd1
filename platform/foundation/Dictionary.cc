#include "platform/foundation/Dictionary.h"

namespace quorin {

List::List(std::initializer_list<Value> values) {
  for (const Value& value : values) append(value);
}

void List::reserve(std::size_t count) {
  if (count > size()) Elements::own(_elements, count - size(), true);
}

Dictionary::Dictionary(std::initializer_list<std::pair<std::string_view, Value>> literals) {
  for (const auto& [key, value] : literals) set(Literal{key}, value);
}

// A key of a kind stands once in the program, and so is found by its address alone.
std::size_t Dictionary::search(const Elements& elements, const Literal& key) {
  const Literal* const first = elements.keys();
  const Literal* const end = first + elements.size();
  const auto address = [](const Literal& known) { return known.text.data(); };
  const Literal* const found = key.padded && !elements.hasOwnKeys()
                                   ? std::ranges::find(first, end, key.text.data(), address)
                                   : std::ranges::find(first, end, key.text, &Literal::text);
  return static_cast<std::size_t>(found - first);
}

void Dictionary::set(Literal key, Ref<String> text, Value value) {
  const std::size_t place = _elements ? search(*_elements, key) : places();
  if (place == places())
    append(key, std::move(text), std::move(value));
  else
    setAt(place, std::move(value));
}

void Dictionary::append(Literal key, Ref<String> text, Value value) {
  const bool plain = value.isPlain();
  Elements::ownWithKeys(_elements, plain).append(key, std::move(text), std::move(value), plain);
}

Dictionary Dictionary::bridged() const {
  Dictionary copy(_elements ? _elements->copy(0) : Elements::create(std::size_t{0}));
  copy._elements->mark();
  return copy;
}

bool operator==(const Dictionary& a, const Dictionary& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const DictionaryEntry& x, const DictionaryEntry& y) {
                      return x.key.text == y.key.text && x.value == y.value;
                    });
}

}  // namespace quorin
