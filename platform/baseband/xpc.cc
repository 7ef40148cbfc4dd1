#include "platform/baseband/xpc.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <variant>
#include <vector>

namespace quorin {

class XpcObject {
 public:
  using Entries = std::vector<std::pair<std::string, XpcRef>>;
  // The alternatives stand in the order of xpc_type_t.
  using Content = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                               std::vector<std::uint8_t>, Entries>;

  explicit XpcObject(Content made) : content(std::move(made)) {}

  std::atomic<std::uint32_t> references{1};
  Content content;
};

namespace {

XpcCreateHook& createHook() {
  static XpcCreateHook hook;
  return hook;
}

xpc_object_t create(XpcObject::Content content) {
  const xpc_object_t made = new XpcObject(std::move(content));
  return createHook() ? createHook()(made) : made;
}

}  // namespace

void setXpcCreateHook(XpcCreateHook hook) { createHook() = std::move(hook); }

xpc_object_t xpc_null_create() { return create(std::monostate{}); }
xpc_object_t xpc_bool_create(bool value) { return create(value); }
xpc_object_t xpc_int64_create(std::int64_t value) { return create(value); }
xpc_object_t xpc_double_create(double value) { return create(value); }
xpc_object_t xpc_string_create(std::string_view text) { return create(std::string(text)); }

xpc_object_t xpc_data_create(const void* bytes, std::size_t length) {
  const auto* first = static_cast<const std::uint8_t*>(bytes);
  return create(std::vector<std::uint8_t>(first, first + length));
}

xpc_object_t xpc_dictionary_create(const char* const* keys, const xpc_object_t* values,
                                   std::size_t count) {
  const xpc_object_t dictionary = create(XpcObject::Entries{});
  for (std::size_t i = 0; dictionary && i < count; ++i)
    xpc_dictionary_set_value(dictionary, keys[i], values[i]);
  return dictionary;
}

void xpc_dictionary_set_value(xpc_object_t dictionary, const char* key, xpc_object_t value) {
  auto* entries = std::get_if<XpcObject::Entries>(&dictionary->content);
  if (!entries) return;  // a null object that stands in for a dictionary takes nothing
  XpcRef held(xpc_retain(value));
  const auto entry = std::ranges::find(*entries, key, &XpcObject::Entries::value_type::first);
  if (entry == entries->end())
    entries->emplace_back(key, std::move(held));
  else
    entry->second = std::move(held);
}

xpc_type_t xpc_get_type(xpc_object_t object) {
  return static_cast<xpc_type_t>(object->content.index());
}

xpc_object_t xpc_retain(xpc_object_t object) {
  if (object) object->references.fetch_add(1, std::memory_order_relaxed);
  return object;
}

void xpc_release(xpc_object_t object) {
  if (object && object->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete object;
}

bool xpc_bool_get_value(xpc_object_t object) { return std::get<bool>(object->content); }
std::int64_t xpc_int64_get_value(xpc_object_t object) {
  return std::get<std::int64_t>(object->content);
}
double xpc_double_get_value(xpc_object_t object) { return std::get<double>(object->content); }
std::string_view xpc_string_get_string(xpc_object_t object) {
  return std::get<std::string>(object->content);
}
Bytes xpc_data_get_bytes(xpc_object_t object) {
  return std::get<std::vector<std::uint8_t>>(object->content);
}

std::size_t xpc_dictionary_get_count(xpc_object_t dictionary) {
  return std::get<XpcObject::Entries>(dictionary->content).size();
}

xpc_object_t xpc_dictionary_get_value(xpc_object_t dictionary, std::string_view key) {
  for (const auto& [name, value] : std::get<XpcObject::Entries>(dictionary->content))
    if (name == key) return value.get();
  return nullptr;
}

void xpc_dictionary_apply(
    xpc_object_t dictionary,
    const std::function<void(const std::string& key, xpc_object_t value)>& visit) {
  for (const auto& [key, value] : std::get<XpcObject::Entries>(dictionary->content))
    visit(key, value.get());
}

}  // namespace quorin
