#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "platform/platform.h"

namespace quorin::fuzz {

inline void show(std::string_view text) { std::cerr << text << '\n'; }
inline void show(const Value& value) { show(printed(value)); }
inline void show(const Dictionary& value) { show(printed(value)); }

/// Ends the run with the promise that was broken and what broke it, texts or values, unless it was
/// kept.
template <class... Broken>
void promise(bool kept, std::string_view what, const Broken&... broken) {
  if (kept) return;
  std::cerr.clear();
  show("broken: " + std::string(what));
  (show(broken), ...);
  std::cerr.flush();
  std::abort();
}

}  // namespace quorin::fuzz
