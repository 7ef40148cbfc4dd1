#pragma once

#include <string>
#include <string_view>

namespace quorin {

/// The text with U+FFFD in place of control characters, so that it cannot steer a terminal.
/// Requires: UTF-8.
[[nodiscard]] std::string printable(std::string_view text);

/// How many columns the text takes: one for each character. Requires: UTF-8.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

}  // namespace quorin
