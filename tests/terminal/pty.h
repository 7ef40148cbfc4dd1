#pragma once

#include <string>

namespace quorin::terminal::test {

/// A terminal whose other end the test holds.
class Pty {
 public:
  Pty(int rows, int columns);
  ~Pty();
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  /// A descriptor of the terminal's own end, for whoever takes it.
  [[nodiscard]] int descriptor() const;
  /// One that stays the test's.
  [[nodiscard]] int kept() const { return _kept; }
  void resize(int rows, int columns);
  void type(const std::string& keys);
  /// What was written to the terminal since the last time.
  [[nodiscard]] std::string written();

 private:
  int _end;
  std::string _path;
  int _kept;  // so that the terminal lives when nobody has it open
};

}  // namespace quorin::terminal::test
