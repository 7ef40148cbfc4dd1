#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace quorin {

/// Ends the process on the spot, without a word: a promise inside the program was broken. Lines
/// printed before are not lost.
[[noreturn]] inline void fatal() {
  std::fflush(stdout);
  std::abort();
}

/// The element at `index`, or the end of the process.
template <class Container>
[[nodiscard]] decltype(auto) elementAt(Container& container, std::ptrdiff_t index) {
  if (index < 0 || index >= static_cast<std::ptrdiff_t>(container.size())) fatal();
  return container[static_cast<std::size_t>(index)];
}

}  // namespace quorin
