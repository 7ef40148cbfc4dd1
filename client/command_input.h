#pragma once

#include <initializer_list>

#include "platform/platform.h"

namespace quorin {

/// One key of a command: an integer, or an object made before.
struct CommandKey {
  const char* key;
  std::int32_t integer = 0;
  xpc_object_t object = nullptr;
};

// What an inter-process call throws ends the process.

/// The command's input dictionary, its keys set in this order. The null object stands in for
/// whatever could not be made.
[[nodiscard]] XpcRef commandInput(std::initializer_list<CommandKey> keys) noexcept;

/// The configuration to push, or null when it cannot be made.
[[nodiscard]] XpcRef commandPayload(Bytes bytes) noexcept;

/// The null object that a command's output is passed as. The caller owns it.
[[nodiscard]] xpc_object_t commandOutput() noexcept;

}  // namespace quorin
