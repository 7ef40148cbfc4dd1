#pragma once

#include "basebandd/simulator/Cell.h"

namespace quorin::simulator {

/// Macro-cell path loss in dB (3GPP TR 36.942 4.5.2) over a distance in metres, base station
/// antennas 15 m above the roofs.
[[nodiscard]] double pathLoss(double metres, double megahertz);

/// Antenna gain in dB towards a point that lies this many degrees off the main direction, at most 0
/// (TR 36.942 4.2.1: 65 degrees wide, 20 dB from front to back).
[[nodiscard]] double antennaPattern(double degrees);

/// What hills between the site and the receiver take, in dB.
[[nodiscard]] double ridgeLoss(Point site, Point receiver);

/// Level in dBm of a cell's reference channel at a place, before shadowing and fading.
[[nodiscard]] double meanLevel(const Cell& cell, Point receiver);

}  // namespace quorin::simulator
