#include "platform/foundation/number.h"

#include <charconv>
#include <cmath>

namespace quorin {

std::optional<double> numberIn(std::string_view text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (text.empty() || error != std::errc() || rest != end || !std::isfinite(number)) return {};
  return number;
}

}  // namespace quorin
