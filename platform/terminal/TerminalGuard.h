#pragma once

#include <string>

namespace quorin::terminal {

/// Gives the terminal back when a signal ends the program, from the handler, and lets the signal
/// do what it does without one. Main thread; one at a time.
class TerminalGuard {
 public:
  /// Remembers the terminal's settings of this moment.
  explicit TerminalGuard(int terminal);
  ~TerminalGuard();
  TerminalGuard(const TerminalGuard&) = delete;
  TerminalGuard& operator=(const TerminalGuard&) = delete;

  /// From now on the terminal is ours, and signals are caught; `restore` is what makes it look as
  /// before.
  void own(const std::string& restore);
  /// It was given back.
  void disown();
};

}  // namespace quorin::terminal
