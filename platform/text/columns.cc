#include "platform/text/columns.h"

#include <algorithm>

namespace quorin {

namespace {

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

}  // namespace

std::string printable(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (isControl(c))
      out += "\xef\xbf\xbd";
    else
      out += c;
  }
  return out;
}

std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

}  // namespace quorin
