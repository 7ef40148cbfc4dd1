#include "platform/baseband/EventRecord.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "platform/baseband/osmin.h"

namespace quorin {

namespace {

// An entry is packed as key, type and content. A known key is one byte, its row; another is 0xff,
// its length and its text. Texts and bytes carry a length of four bytes.
constexpr Literal kKnownKeys[] = {
    kKey<osmin::kKeyMetricID>,  kKey<osmin::kKeyPayload>,     kKey<osmin::kKeyProfileID>,
    kKey<osmin::kKeyTriggerID>, kKey<osmin::kKeyTriggerRef>,  kKey<osmin::kKeyTriggerType>,
    kKey<osmin::kKeyAppID>,     kKey<osmin::kKeyPayloadType>,
};
constexpr std::uint8_t kOtherKey = 0xff;

class Packer {
 public:
  explicit Packer(std::vector<std::uint8_t>& out) : _out(out) {}

  template <class T>
  void plain(const T& value) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&value);
    _out.insert(_out.end(), bytes, bytes + sizeof value);
  }
  void delimited(const void* bytes, std::size_t length) {
    plain(static_cast<std::uint32_t>(length));
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    _out.insert(_out.end(), first, first + length);
  }
  void key(std::string_view key) {
    for (std::uint8_t row = 0; row < std::size(kKnownKeys); ++row)
      if (kKnownKeys[row].text == key) return plain(row);
    plain(kOtherKey);
    delimited(key.data(), key.size());
  }
  void value(xpc_object_t object) {
    const xpc_type_t type = xpc_get_type(object);
    plain(type);
    switch (type) {
      case xpc_type_t::null: break;
      case xpc_type_t::boolean: plain(xpc_bool_get_value(object)); break;
      case xpc_type_t::int64: plain(xpc_int64_get_value(object)); break;
      case xpc_type_t::float64: plain(xpc_double_get_value(object)); break;
      case xpc_type_t::string: {
        const auto text = xpc_string_get_string(object);
        delimited(text.data(), text.size());
        break;
      }
      case xpc_type_t::data: {
        const auto bytes = xpc_data_get_bytes(object);
        delimited(bytes.data(), bytes.size());
        break;
      }
      case xpc_type_t::dictionary: {
        std::vector<std::uint8_t> inner;
        Packer(inner).entries(object);
        delimited(inner.data(), inner.size());
        break;
      }
    }
  }
  void entries(xpc_object_t dictionary) {
    xpc_dictionary_apply(dictionary, [this](const std::string& name, xpc_object_t object) {
      key(name);
      value(object);
    });
  }

 private:
  std::vector<std::uint8_t>& _out;
};

class Unpacker {
 public:
  explicit Unpacker(Bytes packed) : _rest(packed) {}

  /// A packed dictionary has each key once, and mostly few.
  Dictionary dictionary() {
    using Entries = Elements<DictionaryEntry>;
    Block block(Entries::bytes(kFew) + _rest.size() + kFew * Data::mostIn(0));
    Entries* few = Entries::createIn(block, kFew);
    for (std::size_t count = 0; count < kFew && !_rest.empty(); ++count) {
      Value name = key();
      Value content = value(block);
      const bool plain = name.isPlain() && content.isPlain();
      few->append({std::move(name), std::move(content)}, plain);
    }
    Dictionary entries(block);
    while (!_rest.empty()) {
      Value name = key();
      entries.append(std::move(name), value());
    }
    return entries;
  }

  std::pair<Value, Value> values(std::string_view first, std::string_view second) {
    std::pair<Value, Value> found;
    for (int missing = 2; missing > 0 && !_rest.empty();) {
      const std::string_view text = keyText();
      Value* place = isSame(text, first)    ? &found.first
                     : isSame(text, second) ? &found.second
                                            : nullptr;
      if (place) {
        *place = value();
        --missing;
      } else {
        skip();
      }
    }
    return found;
  }

 private:
  static constexpr std::size_t kFew = 8;

  template <class T>
  T plain() {
    T value;
    std::memcpy(&value, _rest.data(), sizeof value);
    _rest = _rest.subspan(sizeof value);
    return value;
  }
  Bytes delimited() {
    const auto length = plain<std::uint32_t>();
    const Bytes bytes = _rest.first(length);
    _rest = _rest.subspan(length);
    return bytes;
  }
  Ref<String> text() {
    const Bytes bytes = delimited();
    return make<String>(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  }
  /// Keys of tables mostly have one address.
  static bool isSame(std::string_view a, std::string_view b) {
    return a.size() == b.size() && (a.data() == b.data() || a == b);
  }
  std::string_view keyText() {
    const auto row = plain<std::uint8_t>();
    if (row != kOtherKey) return kKnownKeys[row].text;
    const Bytes bytes = delimited();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }
  Value key() {
    const auto row = plain<std::uint8_t>();
    return row == kOtherKey ? Value(text()) : Value(kKnownKeys[row]);
  }
  void skip() {
    switch (plain<xpc_type_t>()) {
      case xpc_type_t::null: break;
      case xpc_type_t::boolean: (void)plain<bool>(); break;
      case xpc_type_t::int64:
      case xpc_type_t::float64: (void)plain<std::int64_t>(); break;
      case xpc_type_t::string:
      case xpc_type_t::data:
      case xpc_type_t::dictionary: (void)delimited(); break;
    }
  }
  /// Bytes in the block, which has room.
  Value value(Block& block) {
    if (static_cast<xpc_type_t>(_rest[0]) != xpc_type_t::data) return value();
    (void)plain<xpc_type_t>();
    return Value::inside(Data::createIn(block, delimited()));
  }
  Value value() {
    switch (plain<xpc_type_t>()) {
      case xpc_type_t::null: return {};
      case xpc_type_t::boolean: return Value(plain<bool>());
      case xpc_type_t::int64: return Value(plain<std::int64_t>());
      case xpc_type_t::float64: return Value(plain<double>());
      case xpc_type_t::string: return Value(text());
      case xpc_type_t::data: return Value(make<Data>(delimited()));
      case xpc_type_t::dictionary: return Value(Unpacker(delimited()).dictionary());
    }
    return {};
  }

  Bytes _rest;
};

}  // namespace

const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event) {
  if (!event || xpc_get_type(event) != xpc_type_t::dictionary) return nullptr;
  std::vector<std::uint8_t> packed;
  Packer(packed).entries(event);
  auto* memory = static_cast<std::uint8_t*>(::operator new(sizeof(EventRecord) + packed.size()));
  std::ranges::copy(packed, memory + sizeof(EventRecord));
  return new (memory) EventRecord(static_cast<std::uint32_t>(packed.size()));
}

void EventRecord::release() const {
  if (_references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  this->~EventRecord();
  ::operator delete(const_cast<EventRecord*>(this));
}

std::pair<Value, Value> EventRecord::values(Literal first, Literal second) const {
  return Unpacker(packed()).values(first.text, second.text);
}

Dictionary EventRecord::dictionary() const { return Unpacker(packed()).dictionary(); }

}  // namespace quorin
