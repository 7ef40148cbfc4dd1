#include "basebandd/levels.h"

#include <algorithm>
#include <cmath>

namespace quorin {

std::int32_t rounded(double x) {
  return static_cast<std::int32_t>(x < 0 ? std::ceil(x - 0.5) : std::floor(x + 0.5));
}

std::uint32_t reportIndex(double level, double lowest, double step, std::uint32_t last) {
  if (level < lowest) return 0;
  return std::min(last, 1 + static_cast<std::uint32_t>((level - lowest) / step));
}

}  // namespace quorin
