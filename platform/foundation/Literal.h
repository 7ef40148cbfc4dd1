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
  bool padded = false;  // made by `paddedText`
};

/// What stands behind a padded text, whether it is shown or not.
inline constexpr std::string_view kBehindPadded = ": ";
/// How much of both is copied at once, and the most that they take.
inline constexpr std::size_t kPaddedStep = 32;
inline constexpr std::size_t kMostPadded = 2 * kPaddedStep;

/// The bytes of a padded text of at most `longest` characters.
template <std::size_t longest>
constexpr auto paddedText(std::string_view text) {
  constexpr std::size_t size = longest + kBehindPadded.size();
  static_assert(size <= kMostPadded);
  std::array<char, (size + kPaddedStep - 1) / kPaddedStep * kPaddedStep> padded{};
  std::ranges::copy(kBehindPadded, std::ranges::copy(text, padded.begin()).out);
  return padded;
}

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
inline constexpr auto kPaddedText =
    paddedText<sizeof text.text>(std::string_view(text.text, sizeof text.text));

/// The text that stands once in the program: two equal keys are one address.
template <FixedText text>
inline constexpr Literal kKey{{kPaddedText<text>.data(), sizeof text.text}, true};

/// The keys that the dictionaries of one kind have at most, in their order: no more than 64, each a
/// `kKey`. They live as long as the program.
using Keys = std::span<const Literal>;

}  // namespace quorin
