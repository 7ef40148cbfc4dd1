#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace quorin {

/// One value of an enumeration and the name that an engineer reads.
struct EnumName {
  std::int32_t value;
  std::string_view name;
};

/// The names of an enumeration, ascending by value; there may be gaps.
struct EnumTable {
  std::string_view title;
  std::span<const EnumName> names;

  /// The value's name, or empty when it has none.
  [[nodiscard]] constexpr std::string_view nameOf(std::int32_t value) const {
    std::size_t low = 0;
    std::size_t high = names.size();
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      (names[middle].value < value ? low : high) =
          names[middle].value < value ? middle + 1 : middle;
    }
    return low < names.size() && names[low].value == value ? names[low].name : std::string_view{};
  }
};

/// An `EnumTable` with its rows.
template <std::size_t count>
struct EnumRows {
  std::string_view title;
  std::array<EnumName, count> names;

  constexpr operator EnumTable() const { return {title, names}; }
};

/// Makes a table of names. Rows that do not ascend do not compile.
template <std::size_t count>
consteval EnumRows<count> enumTable(std::string_view title, const EnumName (&rows)[count]) {
  EnumRows<count> table{title, {}};
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0 && rows[i - 1].value >= rows[i].value) throw "the rows of an enumeration must ascend";
    table.names[i] = rows[i];
  }
  return table;
}

/// The value of a name. A misspelt name does not compile.
consteval std::int32_t valueOf(const EnumTable& table, std::string_view name) {
  for (const EnumName& row : table.names)
    if (row.name == name) return row.value;
  throw "the enumeration has no such name";
}

}  // namespace quorin
