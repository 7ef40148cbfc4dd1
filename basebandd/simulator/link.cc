#include "basebandd/simulator/link.h"

#include <algorithm>

#include "basebandd/simulator/arithmetic.h"

namespace quorin::simulator {

namespace {

constexpr double kElementsPerBlock = 12;
constexpr double kReferenceElements = 2;

double powerPerElement(const LteSignal& cell) {
  const double elements = kReferenceElements + (kElementsPerBlock - kReferenceElements) * cell.load;
  return power(cell.rsrp) * elements / kElementsPerBlock;
}

}  // namespace

double powerPerElement(std::span<const LteSignal> cells) {
  double sum = 0;
  for (const LteSignal& cell : cells) sum += powerPerElement(cell);
  return sum;
}

double rssi(double perElement, std::uint32_t resourceBlocks) {
  return decibels(resourceBlocks * kElementsPerBlock * (perElement + power(kNoisePerElement)));
}

double rsrq(double rsrp, double rssi, std::uint32_t resourceBlocks) {
  return decibels(resourceBlocks) + rsrp - rssi;
}

double sinr(const LteSignal& cell, double perElement) {
  const double others = perElement - powerPerElement(cell);
  return cell.rsrp - decibels(others + power(kNoisePerElement));
}

Branch weakerBranch(const Branch& main, double lost) {
  const double noise = power(kNoisePerElement);
  const double kept = power(-lost);
  const auto withLoss = [&](double ratio) {  // of the signal to something that holds the noise
    const double whole = power(main.rsrp - ratio);
    return main.rsrp - lost - decibels(std::max(noise, (whole - noise) * kept + noise));
  };
  const double perBlock = decibels(kElementsPerBlock);
  return {main.rsrp - lost, withLoss(main.rsrq + perBlock) - perBlock, withLoss(main.sinr)};
}

double ecNo(double rscp, double rssi) { return rscp - rssi; }

}  // namespace quorin::simulator
