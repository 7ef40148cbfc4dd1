#include "platform/screen/Trend.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace quorin {

std::optional<double> numberIn(std::string_view text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (text.empty() || error != std::errc() || rest != end || !std::isfinite(number)) return {};
  return number;
}

void Trend::add(Point point) {
  if (_points.size() == kCapacity) _points.erase(_points.begin());
  _points.push_back(point);
}

std::pair<double, double> Trend::range() const {
  const auto [lowest, highest] = std::ranges::minmax(_points, {}, &Point::value);
  return {lowest.value, highest.value};
}

}  // namespace quorin
