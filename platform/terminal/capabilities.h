#pragma once

#include <string>

namespace quorin::terminal {

/// Why a terminal of this type cannot show pages; empty: it can. Requires: curses
/// has no terminal yet.
[[nodiscard]] std::string unfitness(const std::string& type, int descriptor);

/// What makes the terminal of curses look as before: colours and cursor as
/// usual, no mouse, the other screen, and the cursor on the last of so many rows.
[[nodiscard]] std::string restoreSequence(int rows);

}  // namespace quorin::terminal
