#pragma once

#include <cstdio>
#include <memory>
#include <optional>

#include "platform/terminal/Canvas.h"
#include "platform/terminal/TerminalGuard.h"

namespace quorin::terminal {

/// What came from the terminal.
struct Input {
  enum class Kind { key, click, wheel };
  Kind kind = Kind::key;
  char32_t key = 0;
  int row = 0;
  int column = 0;
  int rows = 0;  // of the wheel: below 0 towards the start
};

/// A terminal that is open, and its type.
struct Terminal {
  int descriptor = -1;
  std::string type;
  std::string error{};  // why it cannot show pages; empty: it can
};

/// Opens the controlling terminal, or else the one on standard output.
[[nodiscard]] Terminal openTerminal();

/// Takes the environment's locale, and tells what it can show. One of UTF-8 that this machine does
/// not have, as SSH likes to bring along, is as good as any other of UTF-8.
Charset takeLocale();

/// A terminal in the hands of curses. Main thread; one at a time.
class CursesDisplay {
 public:
  /// Requires: a terminal without an error, which belongs to this from now on. Fatal when curses
  /// does not take it.
  explicit CursesDisplay(const Terminal& terminal);
  /// Leaves the terminal as it was.
  ~CursesDisplay();
  CursesDisplay(const CursesDisplay&) = delete;
  CursesDisplay& operator=(const CursesDisplay&) = delete;

  [[nodiscard]] int descriptor() const { return _descriptor; }
  [[nodiscard]] int rows() const;
  [[nodiscard]] int columns() const;
  [[nodiscard]] Charset charset() const { return _charset; }

  /// Sends what differs from what the terminal shows.
  void show(const Canvas& canvas);
  /// The next key or mouse deed that is there already, or empty.
  [[nodiscard]] std::optional<Input> next();

  /// Takes over the terminal's size of this moment.
  void fit();
  /// Sends everything anew with the next `show`.
  void repaint();
  /// Whether the terminal gives mouse deeds to us or keeps them.
  void setMouse(bool ours);
  /// Stops the process as Ctrl-Z does elsewhere, the terminal given back meanwhile.
  void suspend();

 private:
  void chooseLooks();

  int _descriptor;
  TerminalGuard _guard;
  std::FILE* _out;
  std::FILE* _in;
  void* _screen;
  Charset _charset;
  bool _mouse = true;
  std::optional<Canvas> _shown;
};

}  // namespace quorin::terminal
