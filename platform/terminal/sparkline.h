#pragma once

#include "platform/screen/Trend.h"
#include "platform/terminal/glyphs.h"

namespace quorin::terminal {

/// How many of the latest points a sparkline shows. Few, so that a screen full of them still goes
/// over a slow line in a moment.
inline constexpr int kSparklineColumns = 8;

/// The latest values as blocks between their lowest and highest. Empty: fewer than two points, all
/// of one height, or a terminal without blocks.
[[nodiscard]] Glyphs sparkline(const Trend& trend, Charset charset);

}  // namespace quorin::terminal
