#pragma once

#include <cstdint>

namespace quorin::simulator {

/// Numbers that depend on a seed and a stream's number alone, the same on every machine. Each part
/// of the model draws from a stream of its own, so that a draw more in one moves nothing in
/// another.
class Random {
 public:
  Random(std::uint64_t seed, std::uint64_t stream);

  [[nodiscard]] std::uint64_t next();
  /// From 0 up to and without 1.
  [[nodiscard]] double uniform();
  [[nodiscard]] double uniform(double low, double high);
  /// Mean 0, standard deviation 1.
  [[nodiscard]] double gaussian();
  /// A waiting time of this mean.
  [[nodiscard]] double waiting(double mean);
  /// True in this many of a hundred cases.
  [[nodiscard]] bool chance(double percent) { return uniform() * 100 < percent; }

 private:
  std::uint64_t _state;
};

}  // namespace quorin::simulator
