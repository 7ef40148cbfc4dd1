#pragma once

#include <string>
#include <string_view>

namespace quorin::test {

/// A message's bytes, in hexadecimal, from its fields as text: "1:42" a varint, "1:~-7" a zigzag
/// number, "1:'internet'" a string, "1:<0aff>" bytes, "1:[1 8 ~-5]" packed numbers, "1:{2:3}" a
/// nested message; fields stand apart by blanks. The bytes are made here and by nothing of the
/// product.
[[nodiscard]] std::string wire(std::string_view fields);

}  // namespace quorin::test
