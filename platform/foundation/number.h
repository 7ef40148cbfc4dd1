#pragma once

#include <optional>
#include <string_view>

namespace quorin {

/// The number in decimal digits that the whole text is, or empty.
[[nodiscard]] std::optional<double> numberIn(std::string_view text);

}  // namespace quorin
