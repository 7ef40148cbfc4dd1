#include "platform/screen/Trend.h"

#include <algorithm>

namespace quorin {

void Trend::add(Point point) {
  if (_points.size() == kCapacity) _points.erase(_points.begin());
  _points.push_back(point);
}

std::pair<double, double> Trend::range() const {
  const auto [lowest, highest] = std::ranges::minmax(_points, {}, &Point::value);
  return {lowest.value, highest.value};
}

}  // namespace quorin
