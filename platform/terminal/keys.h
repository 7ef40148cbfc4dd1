#pragma once

#include <array>
#include <span>
#include <string_view>

namespace quorin::terminal {

/// A key: a character, or one of these, which lie behind all characters.
namespace key {
[[nodiscard]] constexpr char32_t control(char letter) {
  return static_cast<char32_t>(letter & 0x1f);
}
inline constexpr char32_t kTab = '\t';
inline constexpr char32_t kEnter = '\r';
inline constexpr char32_t kEscape = 0x1b;
inline constexpr char32_t kBackspace = 0x110000;
inline constexpr char32_t kUp = 0x110001;
inline constexpr char32_t kDown = 0x110002;
inline constexpr char32_t kLeft = 0x110003;
inline constexpr char32_t kRight = 0x110004;
inline constexpr char32_t kPageUp = 0x110005;
inline constexpr char32_t kPageDown = 0x110006;
inline constexpr char32_t kHome = 0x110007;
inline constexpr char32_t kEnd = 0x110008;
inline constexpr char32_t kBackTab = 0x110009;
}  // namespace key

/// What a key asks for.
enum class Action {
  up,
  down,
  pageUp,
  pageDown,
  first,
  last,
  open,
  close,
  quit,
  left,
  right,
  find,
  findNext,
  findPrevious,
  log,
  logOlder,
  logNewer,
  mouse,
  repaint,
  help,
};

/// One line of the help page, and its keys.
struct KeyRow {
  Action action;
  std::array<char32_t, 4> keys;  // unused ones are 0
  std::string_view shown;        // the keys as an engineer reads them
  std::string_view help;
};

/// All of them, in the order in which the help page lists them.
[[nodiscard]] std::span<const KeyRow> keyRows();
/// What a key does, or null.
[[nodiscard]] const KeyRow* keyRow(char32_t pressed);

}  // namespace quorin::terminal
