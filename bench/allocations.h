#pragma once

#include <cstddef>

namespace quorin::bench {

/// How often this program has asked the heap for memory. Any thread.
[[nodiscard]] std::size_t allocations();

}  // namespace quorin::bench
