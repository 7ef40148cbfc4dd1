#pragma once

#include <utility>
#include <vector>

#include "platform/foundation/clock.h"

namespace quorin {

/// The last values of a row whose detail is a number, oldest first; kept while its page is shown.
class Trend {
 public:
  /// Five minutes of reloads.
  static constexpr std::size_t kCapacity = 60;

  struct Point {
    Milliseconds uptime;
    double value;
  };

  /// Adds a point, and forgets the oldest when there are too many.
  void add(Point point);
  [[nodiscard]] const std::vector<Point>& points() const { return _points; }
  /// Lowest and highest value. Requires: a point.
  [[nodiscard]] std::pair<double, double> range() const;

 private:
  std::vector<Point> _points;
};

}  // namespace quorin
