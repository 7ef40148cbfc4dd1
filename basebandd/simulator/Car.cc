#include "basebandd/simulator/Car.h"

#include <algorithm>
#include <cmath>

#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

namespace {

constexpr double kAcceleration = 1.5;  // m/s^2
constexpr double kBraking = 2;         // m/s^2
constexpr double kTurning = 5;         // m/s
constexpr double kArrived = 1;         // m

// The drive begins somewhere in the first part of the round, in town.
constexpr std::size_t kPossibleStarts = 8;

}  // namespace

Car::Car(std::uint64_t seed) : _random(seed, streams::kCar), _temper(_random.uniform(0.9, 1.1)) {
  const auto start = static_cast<std::size_t>(_random.uniform() * kPossibleStarts);
  _at = route()[start].at;
  _towards = start + 1;
}

void Car::drive(double seconds) {
  if (_waiting > 0) {
    _waiting -= seconds;
    return;
  }
  const Waypoint& next = route()[_towards];
  const double left = distance(_at, next.at);
  const double atEnd = next.waitingSeconds > 0 ? 0 : kTurning;
  const double allowed =
      std::min(next.metresPerSecond * _temper, std::sqrt(atEnd * atEnd + 2 * kBraking * left));
  _speed = std::clamp(allowed, _speed - 2 * kBraking * seconds, _speed + kAcceleration * seconds);
  _speed = std::max(_speed, 0.5);
  const double step = std::min(left, _speed * seconds);
  if (left > 0) {
    _at.x += (next.at.x - _at.x) * step / left;
    _at.y += (next.at.y - _at.y) * step / left;
  }
  if (left - step > kArrived) return;
  _towards = (_towards + 1) % route().size();
  if (next.waitingSeconds > 0) {
    _waiting = _random.uniform(0.3, 1.7) * next.waitingSeconds;
    _speed = 0;
  }
}

}  // namespace quorin::simulator
