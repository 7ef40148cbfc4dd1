#pragma once

#include <string>
#include <string_view>

namespace quorin {

/// Repeats what a client sent, up to 64 bytes of whole characters, so that no answer grows with
/// what it refuses.
[[nodiscard]] inline std::string excerpt(std::string_view text) {
  constexpr std::size_t kMost = 64;
  if (text.size() <= kMost) return std::string(text);
  std::size_t end = kMost;
  while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
  return std::string(text.substr(0, end)) + "...";
}

}  // namespace quorin
