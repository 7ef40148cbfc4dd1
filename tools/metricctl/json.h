#pragma once

#include <nlohmann/json.hpp>

#include "platform/platform.h"

namespace quorin::metricctl {

/// JSON that keeps its keys' order and writes 32-bit floats as the shortest text that reads back.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool,
                                  std::int64_t, std::uint64_t, float>;

/// Numbers exact, booleans as booleans, bytes as lower-case hexadecimal, texts with U+FFFD where
/// they are not UTF-8.
[[nodiscard]] Json jsonOf(const Value& value);
[[nodiscard]] Json jsonOf(const Dictionary& dictionary);

}  // namespace quorin::metricctl
