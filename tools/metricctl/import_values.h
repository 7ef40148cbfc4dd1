#pragma once

#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string_view>

#include "platform/platform.h"

namespace quorin::metricctl {

/// One record of a drive log, or a part of one: names and values. A row of a table is an object of
/// texts.
using Record = nlohmann::json;

/// Which numbers of a log are values, and in which unit a message carries them.
struct Quantity {
  double lowest = 0;
  double highest = 0;
  double scale = 1;
  bool whole = false;       // a channel, an identity or a count: a fraction is malformed
  std::string_view unit{};  // what may stand behind the number
  double filler = kNone;    // what only stands where a value would
  double otherFiller = kNone;

  static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
};

/// What a log says about one field: nothing, a number in the message's unit, or something that no
/// such field can be.
struct Reading {
  enum class Kind : std::uint8_t { absent, value, malformed };

  Kind kind = Kind::absent;
  std::int64_t number = 0;

  static constexpr Reading of(std::int64_t number) { return {Kind::value, number}; }
  static constexpr Reading malformed() { return {Kind::malformed, 0}; }
  [[nodiscard]] constexpr bool isMalformed() const { return kind == Kind::malformed; }
  [[nodiscard]] constexpr bool isValue() const { return kind == Kind::value; }
};

/// A text of a log and the number that a message has for it.
struct NamedNumber {
  std::string_view name;
  std::int64_t number;
};

/// Whether a text only stands where a value would.
[[nodiscard]] bool isFiller(std::string_view text);

/// The value under `key`, or null.
[[nodiscard]] const Record* find(const Record& object, std::string_view key);
/// The text under `key`; empty where there is none.
[[nodiscard]] std::string_view textIn(const Record& object, std::string_view key);

/// A number, or text of one: outside the quantity's range absent, else scaled and rounded to
/// nearest, halves away from zero.
[[nodiscard]] Reading numberIn(const Record& object, std::string_view key,
                               const Quantity& quantity);
[[nodiscard]] Reading numberIn(std::string_view text, const Quantity& quantity);
/// The number that text such as "0x28ff" writes.
[[nodiscard]] Reading hexadecimalIn(const Record& object, std::string_view key,
                                    const Quantity& quantity);
/// The number of `name`; absent when no row has it.
[[nodiscard]] Reading numberOf(std::string_view name, std::span<const NamedNumber> names);

/// A network identity from text such as "60801".
struct NetworkIdentity {
  std::int64_t mcc;
  std::int64_t mnc;
  std::int64_t mncDigits;
};
/// Empty when there is none; `malformed` is set when the text cannot be one.
[[nodiscard]] std::optional<NetworkIdentity> networkIn(const Record& object, std::string_view key,
                                                       bool& malformed);

/// Reads a time by its pattern, in which Y, M, D, h, m and s stand for digits and the rest for
/// itself; further digits after a last "." are fractions of the second. Taken as UTC.
[[nodiscard]] std::optional<Milliseconds> timeOf(std::string_view text, std::string_view pattern);

}  // namespace quorin::metricctl
