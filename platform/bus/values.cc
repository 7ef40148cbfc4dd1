#include "platform/bus/values.h"

#include <string>

namespace quorin::bus {

namespace {

/// Text on the bus must be UTF-8 without NUL.
std::string busText(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\0') break;
    out += c;
  }
  return out;
}

int appendVariant(sd_bus_message* m, xpc_object_t value) {
  switch (xpc_get_type(value)) {
    case xpc_type_t::boolean: return sd_bus_message_append(m, "v", "b", xpc_bool_get_value(value));
    case xpc_type_t::int64: return sd_bus_message_append(m, "v", "x", xpc_int64_get_value(value));
    case xpc_type_t::float64:
      return sd_bus_message_append(m, "v", "d", xpc_double_get_value(value));
    case xpc_type_t::string:
      return sd_bus_message_append(m, "v", "s", busText(xpc_string_get_string(value)).c_str());
    case xpc_type_t::data: {
      const Bytes bytes = xpc_data_get_bytes(value);
      int result = sd_bus_message_open_container(m, 'v', "ay");
      if (result >= 0) result = sd_bus_message_append_array(m, 'y', bytes.data(), bytes.size());
      return result < 0 ? result : sd_bus_message_close_container(m);
    }
    default: return sd_bus_message_append(m, "v", "g", "");
  }
}

template <class T>
T readBasic(sd_bus_message* m, char type) {
  T value{};
  (void)sd_bus_message_read_basic(m, type, &value);
  return value;
}

/// The value inside a variant of this type; null for types that dictionaries do not carry.
XpcRef readValue(sd_bus_message* m, std::string_view type) {
  if (type == "x") return XpcRef(xpc_int64_create(readBasic<std::int64_t>(m, 'x')));
  if (type == "b") return XpcRef(xpc_bool_create(readBasic<int>(m, 'b') != 0));
  if (type == "d") return XpcRef(xpc_double_create(readBasic<double>(m, 'd')));
  if (type == "s") return XpcRef(xpc_string_create(readBasic<const char*>(m, 's')));
  if (type == "g") return (void)readBasic<const char*>(m, 'g'), XpcRef(xpc_null_create());
  if (type == "ay") {
    const void* bytes = nullptr;
    std::size_t length = 0;
    (void)sd_bus_message_read_array(m, 'y', &bytes, &length);
    return XpcRef(xpc_data_create(bytes, length));
  }
  (void)sd_bus_message_skip(m, nullptr);
  return {};
}

}  // namespace

int appendDictionary(sd_bus_message* m, xpc_object_t dictionary) {
  int result = sd_bus_message_open_container(m, 'a', "{sv}");
  if (result < 0) return result;
  if (dictionary && xpc_get_type(dictionary) == xpc_type_t::dictionary)
    xpc_dictionary_apply(dictionary, [&](const std::string& key, xpc_object_t value) {
      if (result >= 0) result = sd_bus_message_open_container(m, 'e', "sv");
      if (result >= 0) result = sd_bus_message_append(m, "s", busText(key).c_str());
      if (result >= 0) result = appendVariant(m, value);
      if (result >= 0) result = sd_bus_message_close_container(m);
    });
  return result < 0 ? result : sd_bus_message_close_container(m);
}

XpcRef readDictionary(sd_bus_message* m) {
  if (sd_bus_message_enter_container(m, 'a', "{sv}") <= 0) return {};
  XpcRef dictionary(xpc_dictionary_create(nullptr, nullptr, 0));
  while (sd_bus_message_enter_container(m, 'e', "sv") > 0) {
    const std::string key = readBasic<const char*>(m, 's');
    const char* type = nullptr;
    if (sd_bus_message_peek_type(m, nullptr, &type) <= 0 || !type) return {};
    const std::string held = type;
    if (sd_bus_message_enter_container(m, 'v', held.c_str()) <= 0) return {};
    const XpcRef value = readValue(m, held);
    (void)sd_bus_message_exit_container(m);
    (void)sd_bus_message_exit_container(m);
    if (value) xpc_dictionary_set_value(dictionary.get(), key.c_str(), value.get());
  }
  (void)sd_bus_message_exit_container(m);
  return dictionary;
}

}  // namespace quorin::bus
