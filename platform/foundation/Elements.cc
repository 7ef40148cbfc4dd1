#include "platform/foundation/Elements.h"

namespace quorin {

Ref<Elements> Elements::copy(std::size_t more) const {
  auto made = create(_size + more);
  std::memcpy(static_cast<void*>(made->first()), first(), _size * sizeof(Value));
  made->_size = _size;
  made->_keys = _keys;
  if (hasOwnKeys()) {
    made->_whole.ownKeys = _whole.ownKeys;
    _whole.ownKeys->retain();
  }
  made->_present = _present;
  made->_holders = made->_whole.counting = _holders;
  // The bytes of a value are its copy once what it holds counts one more.
  _holders.each(_size, [this](std::size_t place) { first()[place].retain(); });
  made->_whole.marked = isMarked() ? 1 : 0;
  return made;
}

Elements* Elements::copyDictionariesIn(Block& block, Keys keys) const {
  const auto at = [](const Elements* elements) {
    return reinterpret_cast<const std::uint8_t*>(elements);
  };
  const Elements* const kind = first()->elements();
  const std::size_t size = bytes(kind->_size);
  const std::size_t room = bytes(keys.size());
  const std::uint8_t* next = at(kind);
  bool areTogether = room == size;  // one behind the other, as a reader makes them
  for (const Value& value : all()) {
    if (value.kind() != Value::Kind::dictionary || value.isPlain()) return nullptr;
    const auto* from = static_cast<const Elements*>(value.held());
    if (!from->isPlain() || from->_keys != kind->_keys) return nullptr;
    areTogether &= at(from) == next;
    next += size;
  }
  Elements* list = createIn(block, _size);
  auto* to = static_cast<std::uint8_t*>(block.take(_size * room));
  // The bytes of a plain one are its copy once it knows where it lies.
  if (areTogether) {
    std::memcpy(to, at(kind), _size * size);
  } else {
    for (std::size_t i = 0; i < _size; ++i) {
      std::memcpy(to + i * room, at(first()[i].elements()), size);
      auto* copy = reinterpret_cast<Elements*>(to + i * room);
      copy->_keys = keys.data();
      copy->_size = copy->_capacity = static_cast<std::uint32_t>(keys.size());
    }
  }
  for (Value *value = list->first(), *end = value + _size; value != end; ++value, to += room) {
    auto* copy = reinterpret_cast<Elements*>(to);
    copy->layIn(block.first());
    new (value) Value(Value::inside(Value::Kind::dictionary, copy));
  }
  list->setInside(_size);
  return list;
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
  const bool loose = elements && elements->hasOwnKeys();
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
    if (elements) values->_whole.marked = elements->isMarked() ? 1 : 0;
    elements = std::move(values);
  } else {
    own(elements, 1, plain);
    if (elements->_whole.ownKeys->references() == 1) return *elements;
    keys = make<OwnKeys>();
    keys->all = elements->_whole.ownKeys->all;
    keys->texts = elements->_whole.ownKeys->texts;
    elements->_whole.ownKeys->release();
  }
  elements->_keys = keys->all.data();
  elements->_whole.ownKeys = keys.take();
  return *elements;
}

void Elements::append(Literal key, Ref<String> text, Value&& value, bool plain) {
  if (text) _whole.ownKeys->texts.push_back(std::move(text));
  _whole.ownKeys->all.push_back(key);
  _keys = _whole.ownKeys->all.data();
  append(std::move(value), plain);
}

}  // namespace quorin
