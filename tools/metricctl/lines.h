#pragma once

#include <iostream>
#include <string>
#include <string_view>

#include "tools/metricctl/commands.h"

namespace quorin::metricctl {

/// Reads a stream line by line and names the lines that cannot be read on standard error.
class Lines {
 public:
  Lines(std::string name, std::istream& stream) : _name(std::move(name)), _stream(stream) {}

  /// The next line, without its line end. False at the end.
  [[nodiscard]] bool next(std::string& line) {
    if (!std::getline(_stream, line)) return false;
    if (line.ends_with('\r')) line.pop_back();
    ++_number;
    return true;
  }

  void unreadable(std::string_view reason) {
    std::cerr << _name << ":" << _number << ": " << reason << '\n';
    _exit = unreadableInput;
  }

  [[nodiscard]] std::size_t number() const { return _number; }
  /// `done`, or `unreadableInput` once a line was unreadable.
  [[nodiscard]] Exit exitCode() const { return _exit; }

 private:
  std::string _name;
  std::istream& _stream;
  std::size_t _number = 0;
  Exit _exit = done;
};

}  // namespace quorin::metricctl
