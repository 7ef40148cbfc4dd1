#include "platform/terminal/sparkline.h"

#include <algorithm>
#include <cmath>

namespace quorin::terminal {

namespace {

constexpr std::wstring_view kBlocks = L"▁▂▃▄▅▆▇█";

}  // namespace

Glyphs sparkline(const Trend& trend, Charset charset) {
  const auto& points = trend.points();
  const auto latest =
      points.end() - std::min(std::ssize(points), std::ptrdiff_t{kSparklineColumns});
  if (latest == points.end() || charset == Charset::ascii) return {};
  // Halves, since the span of two doubles may be too large for a double.
  double lowest = latest->value / 2;
  double highest = lowest;
  for (auto point = latest; point != points.end(); ++point) {
    lowest = std::min(lowest, point->value / 2);
    highest = std::max(highest, point->value / 2);
  }
  if (lowest == highest) return {};
  Glyphs line;
  for (auto point = latest; point != points.end(); ++point) {
    const double height = (point->value / 2 - lowest) / (highest - lowest);
    const auto block = std::lround(height * static_cast<double>(kBlocks.size() - 1));
    line.push_back({{kBlocks[static_cast<std::size_t>(block)]}, 1});
  }
  return line;
}

}  // namespace quorin::terminal
