#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace quorin {

/// The text as one line: a "?" in place of each ASCII control character.
[[nodiscard]] inline std::string oneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
  return text;
}

/// Repeats what a client sent in one line, up to 64 bytes of whole characters, so that no answer
/// grows with what it refuses.
[[nodiscard]] inline std::string excerpt(std::string_view text) {
  constexpr std::size_t kMost = 64;
  if (text.size() <= kMost) return oneLine(std::string(text));
  std::size_t end = kMost;
  while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
  return oneLine(std::string(text.substr(0, end))) + "...";
}

}  // namespace quorin
