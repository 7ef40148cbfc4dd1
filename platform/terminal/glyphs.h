#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace quorin::terminal {

/// What the terminal can show.
enum class Charset { unicode, ascii };

/// One printed character: a base and what combines with it.
struct Glyph {
  static constexpr std::size_t kLongest = 5;
  std::array<wchar_t, kLongest + 1> text{L' '};  // ends with a null
  int columns = 1;                               // 2: wide; 0: the right half of a wide one
  friend bool operator==(const Glyph&, const Glyph&) = default;
};
using Glyphs = std::vector<Glyph>;

/// UTF-8 as glyphs that cannot steer a terminal: what is not printable, or not UTF-8, becomes
/// U+FFFD. In ASCII the few signs of our own get a likeness, all others a question mark.
/// Widths are those of the locale in force.
[[nodiscard]] Glyphs glyphsOf(std::string_view text, Charset charset);

/// How many columns they take.
[[nodiscard]] int columnsOf(const Glyphs& glyphs);

/// Breaks into lines of at most `columns`, behind a separator where there is one in the line's
/// second half. Nothing is left out. An empty text is one empty line.
[[nodiscard]] std::vector<Glyphs> wrapped(const Glyphs& glyphs, int columns);

/// The glyphs, or their beginning with an ellipsis.
[[nodiscard]] Glyphs shortened(const Glyphs& glyphs, int columns, Charset charset);
/// The glyphs, or an ellipsis with their end.
[[nodiscard]] Glyphs shortenedAtStart(const Glyphs& glyphs, int columns, Charset charset);

/// UTF-8 again.
[[nodiscard]] std::string textOf(const Glyph& glyph);
[[nodiscard]] std::string textOf(const Glyphs& glyphs);

}  // namespace quorin::terminal
