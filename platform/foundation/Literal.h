#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace quorin {

/// Text that lives as long as the program, for keys and names from tables.
struct Literal {
  std::string_view text;
  bool padded = false;  // whole steps of `kPaddedStep` bytes may be read
};

/// How much of a padded text is copied at once, and the most that one takes.
inline constexpr std::size_t kPaddedStep = 32;
inline constexpr std::size_t kMostPadded = 2 * kPaddedStep;

/// A text as a template's argument.
template <std::size_t size>
struct FixedText {
  char text[size]{};

  consteval FixedText(const char (&literal)[size + 1]) { std::copy_n(literal, size, text); }
  consteval explicit FixedText(std::string_view literal) {
    std::copy_n(literal.data(), size, text);
  }
};
template <std::size_t size>
FixedText(const char (&literal)[size]) -> FixedText<size - 1>;

template <FixedText text>
inline constexpr auto kPaddedText = [] {
  static_assert(sizeof text.text <= kMostPadded);
  std::array<char, (sizeof text.text + kPaddedStep - 1) / kPaddedStep * kPaddedStep> padded{};
  std::ranges::copy(text.text, padded.begin());
  return padded;
}();

/// The text that stands once in the program: two equal keys are one address.
template <FixedText text>
inline constexpr Literal kKey{{kPaddedText<text>.data(), sizeof text.text}, true};

/// The keys that the dictionaries of one kind have at most, in their order: no more than 64, each a
/// `kKey`. They live as long as the program.
using Keys = std::span<const Literal>;

}  // namespace quorin
