#include "basebandd/simulator/arithmetic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace quorin::simulator {

namespace {

constexpr double kDecibelsPerNeper = 10 / std::numbers::ln10;

// Coefficients of a power series, the highest power first.
template <std::size_t count>
using Series = std::array<double, count>;

// artanh(z) / z in powers of z^2.
constexpr Series<10> kArtanh = [] {
  Series<10> series{};
  for (std::size_t i = 0; i < series.size(); ++i)
    series[i] = 1.0 / static_cast<double>(2 * (series.size() - i) - 1);
  return series;
}();

// e^x, to x^14.
constexpr Series<15> kExponential = [] {
  Series<15> series{};
  double factorial = 1;
  for (std::size_t n = 0; n < series.size(); ++n) {
    if (n > 0) factorial *= static_cast<double>(n);
    series[series.size() - 1 - n] = 1 / factorial;
  }
  return series;
}();

// cos(2 pi u) in powers of u^2, to u^16.
constexpr Series<9> kCosine = [] {
  Series<9> series{};
  double term = 1;
  for (std::size_t n = 0; n < series.size(); ++n) {
    series[series.size() - 1 - n] = term;
    term *=
        -4 * std::numbers::pi * std::numbers::pi / static_cast<double>((2 * n + 1) * (2 * n + 2));
  }
  return series;
}();

template <std::size_t count>
double sumOf(const Series<count>& series, double x) {
  double sum = 0;
  for (const double coefficient : series) sum = sum * x + coefficient;
  return sum;
}

}  // namespace

// With m in [sqrt(1/2), sqrt(2)): ln(m) = 2 artanh((m - 1) / (m + 1)).
double logarithm(double x) {
  int exponent = 0;
  double mantissa = std::frexp(x, &exponent);
  if (mantissa < std::numbers::sqrt2 / 2) {
    mantissa *= 2;
    --exponent;
  }
  const double z = (mantissa - 1) / (mantissa + 1);
  return 2 * z * sumOf(kArtanh, z * z) + exponent * std::numbers::ln2;
}

double exponential(double x) {
  const double halvings = std::floor(x / std::numbers::ln2 + 0.5);
  const double rest = x - halvings * std::numbers::ln2;
  return std::ldexp(sumOf(kExponential, rest), static_cast<int>(halvings));
}

double decibels(double power) { return kDecibelsPerNeper * logarithm(std::max(power, 1e-30)); }

double power(double decibels) { return exponential(decibels / kDecibelsPerNeper); }

double cosine(double turns) {
  double u = std::abs(turns);
  u -= static_cast<double>(static_cast<std::int64_t>(u));
  if (u > 0.5) u = 1 - u;
  const bool negative = u > 0.25;
  if (negative) u = 0.5 - u;
  const double sum = sumOf(kCosine, u * u);
  return negative ? -sum : sum;
}

// The Hastings approximation, good to 0.01 degrees.
double degreesOfCosine(double cosine) {
  const double x = std::min(1.0, std::abs(cosine));
  const double angle =
      std::sqrt(1 - x) * (1.5707288 + x * (-0.2121144 + x * (0.0742610 - x * 0.0187293)));
  const double degrees = angle * 180 / std::numbers::pi;
  return cosine < 0 ? 180 - degrees : degrees;
}

}  // namespace quorin::simulator
