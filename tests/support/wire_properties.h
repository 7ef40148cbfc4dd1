#pragma once

#include <string>

#include "messages/codec/AnyMessage.h"

namespace quorin::test {

/// What must hold for every byte string read as every class: it is read without a crash, has a
/// dictionary, and what was read survives writing and reading. Gives what does not hold, or empty.
[[nodiscard]] std::string brokenWireProperty(const MessageTable& table, Bytes payload);

}  // namespace quorin::test
