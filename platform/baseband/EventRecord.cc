#include "platform/baseband/EventRecord.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "platform/baseband/osmin.h"

namespace quorin {

namespace {

// A metric's content is its two numbers, and then the payload with zeros behind it. Any other
// event's entries are packed as key, type and content. A known key is one byte, its row; another is
// 0xff, its length and its text. Texts and bytes carry a length of four bytes.
constexpr Literal kKnownKeys[] = {
    kKey<osmin::kKeyMetricID>,  kKey<osmin::kKeyPayload>,     kKey<osmin::kKeyProfileID>,
    kKey<osmin::kKeyTriggerID>, kKey<osmin::kKeyTriggerRef>,  kKey<osmin::kKeyTriggerType>,
    kKey<osmin::kKeyAppID>,     kKey<osmin::kKeyPayloadType>,
};
constexpr std::uint8_t kOtherKey = 0xff;

// What the service sends with a metric, under the first of them.
constexpr xpc_type_t kMetricTypes[] = {xpc_type_t::int64, xpc_type_t::data, xpc_type_t::int64};

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

/// The entries of an event that has these and no others, in this order; empty for any other.
std::optional<EventRecord::Metric> metricEntries(xpc_object_t event) {
  std::vector<xpc_object_t> values;
  xpc_dictionary_apply(event, [&](const std::string& name, xpc_object_t object) {
    const std::size_t row = values.size();
    const bool is = row < std::size(kMetricTypes) && name == kKnownKeys[row].text &&
                    xpc_get_type(object) == kMetricTypes[row];
    values.push_back(is ? object : nullptr);
  });
  if (values.size() != std::size(kMetricTypes) || std::ranges::count(values, nullptr) != 0)
    return std::nullopt;
  return EventRecord::Metric{xpc_int64_get_value(values[0]), xpc_data_get_bytes(values[1]),
                             xpc_int64_get_value(values[2])};
}

class Unpacker {
 public:
  explicit Unpacker(Bytes packed) : _at(packed.data()), _end(packed.data() + packed.size()) {}

  Dictionary dictionary() {
    Dictionary entries;
    while (_at != _end) {
      const auto row = plain<std::uint8_t>();
      const auto name = row == kOtherKey ? text() : nullptr;
      if (name)
        entries.append(name, value());
      else
        entries.append(kKnownKeys[row], value());
    }
    return entries;
  }

 private:
  template <class T>
  T plain() {
    T value;
    std::memcpy(&value, _at, sizeof value);
    _at += sizeof value;
    return value;
  }
  Bytes delimited() {
    const auto length = plain<std::uint32_t>();
    return {std::exchange(_at, _at + length), length};
  }
  Ref<String> text() {
    const Bytes bytes = delimited();
    return make<String>(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
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

  const std::uint8_t* _at;
  const std::uint8_t* _end;
};

}  // namespace

const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event) {
  if (!event || xpc_get_type(event) != xpc_type_t::dictionary) return nullptr;
  std::vector<std::uint8_t> content;
  Packer packer(content);
  const auto metric = metricEntries(event);
  if (metric) {
    packer.plain(metric->id);
    packer.plain(metric->profileID);
    content.insert(content.end(), metric->payload.begin(), metric->payload.end());
    content.resize(content.size() + kReadableBehind);
  } else {
    packer.entries(event);
  }
  auto* memory = static_cast<std::uint8_t*>(::operator new(sizeof(EventRecord) + content.size()));
  std::ranges::copy(content, memory + sizeof(EventRecord));
  return new (memory) EventRecord(content.size(), metric.has_value());
}

void EventRecord::release() const {
  if (_references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  this->~EventRecord();
  ::operator delete(const_cast<EventRecord*>(this));
}

Dictionary EventRecord::dictionary() const {
  const auto metric = this->metric();
  if (!metric) return Unpacker(content()).dictionary();
  DictionaryMaker entries(Keys{kKnownKeys, std::size(kMetricTypes)});
  entries.put(0, Value(metric->id));
  entries.put(1, Value(make<Data>(metric->payload)));
  entries.put(2, Value(metric->profileID));
  return entries.made();
}

}  // namespace quorin
