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

std::string_view readText(sd_bus_message* m) {
  const char* text = readBasic<const char*>(m, 's');
  return text ? text : "";
}

std::string_view readBytes(sd_bus_message* m) {
  const void* bytes = nullptr;
  std::size_t length = 0;
  (void)sd_bus_message_read_array(m, 'y', &bytes, &length);
  return {static_cast<const char*>(bytes), length};
}

/// The value inside a variant of this type; null for types that dictionaries do not carry, and for
/// one that is too long.
XpcRef readValue(sd_bus_message* m, std::string_view type, bool& isTooLong) {
  if (type == "x") return XpcRef(xpc_int64_create(readBasic<std::int64_t>(m, 'x')));
  if (type == "b") return XpcRef(xpc_bool_create(readBasic<int>(m, 'b') != 0));
  if (type == "d") return XpcRef(xpc_double_create(readBasic<double>(m, 'd')));
  if (type == "g") return (void)readBasic<const char*>(m, 'g'), XpcRef(xpc_null_create());
  if (type != "s" && type != "ay") return (void)sd_bus_message_skip(m, nullptr), XpcRef();
  const std::string_view content = type == "s" ? readText(m) : readBytes(m);
  isTooLong = content.size() > kMostBytesEach;
  if (isTooLong) return {};
  return XpcRef(type == "s" ? xpc_string_create(content)
                            : xpc_data_create(content.data(), content.size()));
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

XpcRef readDictionary(sd_bus_message* m, std::string& reason) {
  const auto refuse = [&](std::string why) { return reason = std::move(why), XpcRef(); };
  if (sd_bus_message_enter_container(m, 'a', "{sv}") <= 0) return refuse("there is no dictionary");
  XpcRef dictionary(xpc_dictionary_create(nullptr, nullptr, 0));
  int entered = 0;
  for (std::size_t keys = 1; (entered = sd_bus_message_enter_container(m, 'e', "sv")) > 0; ++keys) {
    if (keys > kMostKeys) return refuse("more than 64 keys");
    const std::string_view read = readText(m);
    if (read.size() > kMostBytesEach) return refuse("a key of more than 1 MiB");
    const std::string key(read);
    const char* type = nullptr;
    if (sd_bus_message_peek_type(m, nullptr, &type) <= 0 || !type) return refuse("broken");
    const std::string held = type;
    if (sd_bus_message_enter_container(m, 'v', held.c_str()) <= 0) return refuse("broken");
    bool isTooLong = false;
    const XpcRef value = readValue(m, held, isTooLong);
    if (isTooLong) return refuse("a value of more than 1 MiB");
    if (sd_bus_message_exit_container(m) < 0 || sd_bus_message_exit_container(m) < 0)
      return refuse("broken");
    if (value) xpc_dictionary_set_value(dictionary.get(), key.c_str(), value.get());
  }
  if (entered < 0 || sd_bus_message_exit_container(m) < 0) return refuse("broken");
  return dictionary;
}

}  // namespace quorin::bus
