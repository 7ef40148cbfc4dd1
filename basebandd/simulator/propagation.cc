#include "basebandd/simulator/propagation.h"

#include <algorithm>
#include <cmath>

#include "basebandd/simulator/arithmetic.h"

namespace quorin::simulator {

namespace {

constexpr double kAntennaOverRoofs = 15;  // m
constexpr double kNearest = 35;           // m; TR 36.942: no receiver stands nearer
constexpr double kCarAndHand = 15;        // dB: vehicle penetration and the hand around the phone

}  // namespace

double pathLoss(double metres, double megahertz) {
  const double kilometres = std::max(metres, kNearest) / 1000;
  return 4 * (1 - 4e-3 * kAntennaOverRoofs) * decibels(kilometres) -
         1.8 * decibels(kAntennaOverRoofs) + 2.1 * decibels(megahertz) + 80;
}

double antennaPattern(double degrees) {
  const double share = degrees / 65;
  return -std::min(12 * share * share, 20.0);
}

double ridgeLoss(Point site, Point receiver) {
  double loss = 0;
  for (const Ridge& ridge : ridges()) {
    if ((site.x < ridge.x) == (receiver.x < ridge.x)) continue;
    const double depth = std::abs(receiver.x - ridge.x);
    loss += ridge.loss * std::min(1.0, depth / ridge.rampMetres);
  }
  return loss;
}

double meanLevel(const Cell& cell, Point receiver) {
  const Point site = cell.site->at;
  const double metres = std::max(1.0, distance(site, receiver));
  const double along =
      ((receiver.x - site.x) * cell.boresight.x + (receiver.y - site.y) * cell.boresight.y) /
      metres;
  return cell.carrier->referencePower + cell.carrier->antennaGain +
         antennaPattern(degreesOfCosine(along)) - pathLoss(metres, cell.carrier->megahertz) -
         ridgeLoss(site, receiver) - kCarAndHand;
}

}  // namespace quorin::simulator
