#pragma once

#include <cstdint>

// The mathematics library may differ in the last bit from machine to machine, and one bit is enough
// to turn a reported level. So the few functions that the model needs are made here from exact
// operations.

namespace quorin::simulator {

/// 10 log10 of a positive power or power ratio; below 1e-30 it stays at -300 dB.
[[nodiscard]] double decibels(double power);

/// The power or power ratio of a level in dB.
[[nodiscard]] double power(double decibels);

/// The cosine of an angle in turns.
[[nodiscard]] double cosine(double turns);

/// The angle in degrees, 0 to 180, whose cosine is given.
[[nodiscard]] double degreesOfCosine(double cosine);

/// e to the power of x.
[[nodiscard]] double exponential(double x);

/// The natural logarithm of a positive number.
[[nodiscard]] double logarithm(double x);

}  // namespace quorin::simulator
