#include "platform/foundation/Elements.h"

namespace quorin {

Ref<Elements> Elements::copy(std::size_t more) const {
  auto made = create(_size + more);
  std::memcpy(static_cast<void*>(made->first()), first(), _size * sizeof(Value));
  made->_size = _size;
  made->_keys = _keys;
  made->_ownKeys = _ownKeys;
  if (_ownKeys) _ownKeys->retain();
  made->_present = _present;
  made->_holders = made->_counting = _holders;
  // The bytes of a value are its copy once what it holds counts one more.
  _holders.each(_size, [this](std::size_t place) { first()[place].retain(); });
  made->marked = marked;
  return made;
}

Elements& Elements::made(Ref<Elements>& elements, std::size_t more) {
  constexpr std::size_t kLeast = 4;
  if (!elements)
    elements = create(more == 0 ? 0 : std::max(more, kLeast));
  else if (more == 0 || elements->references() > 1)
    elements = elements->copy(more);
  else
    elements = elements->copy(std::max<std::size_t>(more, elements->_size));
  return *elements;
}

Elements& Elements::ownWithKeys(Ref<Elements>& elements, bool plain) {
  const bool loose = elements && elements->_ownKeys;
  Ref<OwnKeys> keys;
  if (!loose) {
    const std::size_t count = elements ? elements->count() : 0;
    Ref<Elements> values;
    keys = make<OwnKeys>();
    made(values, count + 1);
    for (std::size_t place = 0; elements && place < elements->_size; ++place) {
      if (!elements->has(place)) continue;
      const Value& value = elements->first()[place];
      keys->all.push_back(elements->_keys[place]);
      values->append(Value(value), value.isPlain());
    }
    if (elements) values->marked = elements->marked;
    elements = std::move(values);
  } else {
    own(elements, 1, plain);
    if (elements->_ownKeys->references() == 1) return *elements;
    keys = make<OwnKeys>();
    keys->all = elements->_ownKeys->all;
    keys->texts = elements->_ownKeys->texts;
    elements->_ownKeys->release();
  }
  elements->_keys = keys->all.data();
  elements->_ownKeys = keys.take();
  return *elements;
}

void Elements::append(Literal key, Ref<String> text, Value&& value, bool plain) {
  if (text) _ownKeys->texts.push_back(std::move(text));
  _ownKeys->all.push_back(key);
  _keys = _ownKeys->all.data();
  append(std::move(value), plain);
}

}  // namespace quorin
