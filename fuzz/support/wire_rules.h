#pragma once

#include <google/protobuf/descriptor.h>

#include <bitset>
#include <string>
#include <string_view>

namespace quorin::fuzz {

/// The rules by which our reading of a payload is meant to differ from the standard's.
enum class Difference : std::uint8_t {
  cutNumber,      // a field number is cut to 16 bits
  numberZero,     // field number 0 is skipped
  registeredTag,  // one varint is read whatever the wire type, and dropped
  otherWireType,  // a known field is read by its own rule
  endOfGroup,     // ends the message; in a nested one the outer one reads what is left
  longVarint,     // more than ten bytes are 0
  longPrefix,     // a key or a length of more than 32 bits, or written in more than five bytes
  deepGroup,      // groups may be nested as deep as they like
  signBit,        // a sint32's encoding is shifted arithmetically
  replaced,       // a singular nested message given twice is the second one
  nameless,       // an enumeration value without a name stays in its field
  count
};
using Differences = std::bitset<static_cast<std::size_t>(Difference::count)>;

/// A payload as our rules have it, worked out from the exported .proto and by nothing of the
/// product.
struct Understood {
  bool ok = false;          // whether reading it succeeds
  std::string standard;     // the plain bytes of what is read, also where reading fails
  Differences differences;  // the rules that were needed; none: the standard must agree
};
[[nodiscard]] Understood understand(const google::protobuf::Descriptor& message,
                                    std::string_view payload);

}  // namespace quorin::fuzz
