#pragma once

#include <cstdint>

namespace quorin::test {

/// From now on counts what the program takes with `new`, on every thread, and fails the
/// `failing`-th (from 1); 0 fails none.
void countAllocations(std::uint64_t failing);

/// Allocations since then.
[[nodiscard]] std::uint64_t countedAllocations();

}  // namespace quorin::test
