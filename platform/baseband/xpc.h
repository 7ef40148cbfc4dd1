#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "platform/foundation/Data.h"

namespace quorin {

/// What an inter-process object is.
enum class xpc_type_t : std::uint8_t { null, boolean, int64, float64, string, data, dictionary };

class XpcObject;

/// A counted inter-process object, immutable once it was handed on. Counts are atomic: objects
/// cross threads. Null where none could be made.
using xpc_object_t = XpcObject*;

/// Each gives an object with one reference, or null when it cannot be made.
[[nodiscard]] xpc_object_t xpc_null_create();
[[nodiscard]] xpc_object_t xpc_bool_create(bool value);
[[nodiscard]] xpc_object_t xpc_int64_create(std::int64_t value);
[[nodiscard]] xpc_object_t xpc_double_create(double value);
[[nodiscard]] xpc_object_t xpc_string_create(std::string_view text);
[[nodiscard]] xpc_object_t xpc_data_create(const void* bytes, std::size_t length);
[[nodiscard]] xpc_object_t xpc_dictionary_create(const char* const* keys,
                                                 const xpc_object_t* values, std::size_t count);

/// Sets one key, keeping the order of first setting; the dictionary takes a reference of its own.
void xpc_dictionary_set_value(xpc_object_t dictionary, const char* key, xpc_object_t value);

[[nodiscard]] xpc_type_t xpc_get_type(xpc_object_t object);
xpc_object_t xpc_retain(xpc_object_t object);
void xpc_release(xpc_object_t object);

/// Each requires its type.
[[nodiscard]] bool xpc_bool_get_value(xpc_object_t object);
[[nodiscard]] std::int64_t xpc_int64_get_value(xpc_object_t object);
[[nodiscard]] double xpc_double_get_value(xpc_object_t object);
[[nodiscard]] std::string_view xpc_string_get_string(xpc_object_t object);
[[nodiscard]] Bytes xpc_data_get_bytes(xpc_object_t object);
[[nodiscard]] std::size_t xpc_dictionary_get_count(xpc_object_t dictionary);
/// The value, without a reference of its own, or null.
[[nodiscard]] xpc_object_t xpc_dictionary_get_value(xpc_object_t dictionary, std::string_view key);
/// Visits the entries in their order.
void xpc_dictionary_apply(
    xpc_object_t dictionary,
    const std::function<void(const std::string& key, xpc_object_t value)>& visit);

/// Sees each object just made and gives back what its maker shall get in its place, which may be
/// null: how a test lets memory run out. Requires: no other thread makes objects.
using XpcCreateHook = std::function<xpc_object_t(xpc_object_t made)>;
void setXpcCreateHook(XpcCreateHook hook);

/// Holds one reference.
class XpcRef {
 public:
  XpcRef() = default;
  /// Takes over the reference that a create function gave.
  explicit XpcRef(xpc_object_t object) : _object(object) {}
  XpcRef(const XpcRef& other) : _object(xpc_retain(other._object)) {}
  XpcRef(XpcRef&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
  XpcRef& operator=(XpcRef other) noexcept {
    std::swap(_object, other._object);
    return *this;
  }
  ~XpcRef() { xpc_release(_object); }

  [[nodiscard]] xpc_object_t get() const { return _object; }
  explicit operator bool() const { return _object != nullptr; }

 private:
  xpc_object_t _object = nullptr;
};

}  // namespace quorin
