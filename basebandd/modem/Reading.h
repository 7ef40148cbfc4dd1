#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorin::modem {

struct Reading;
using Readings = std::map<std::string, Reading, std::less<>>;  // by the source's own key

/// One value as the modem's service gives it: a whole number, a level, a text, bytes, a list or
/// more readings by key; or nothing.
struct Reading {
  std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::uint8_t>,
               std::vector<Reading>, Readings>
      value;

  /// The value when it is of this type, else null.
  template <class T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&value);
  }
  bool operator==(const Reading&) const = default;
};

/// The reading under the key, or one that is nothing.
[[nodiscard]] inline const Reading& at(const Readings& readings, std::string_view key) {
  static const Reading kNothing;
  const auto found = readings.find(key);
  return found == readings.end() ? kNothing : found->second;
}

/// The value under the key when it is of this type, else the other one.
template <class T>
[[nodiscard]] T valueAt(const Readings& readings, std::string_view key, T otherwise) {
  const T* value = at(readings, key).as<T>();
  return value ? *value : otherwise;
}

}  // namespace quorin::modem
