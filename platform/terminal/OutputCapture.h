#pragma once

#include <array>
#include <thread>

#include "platform/terminal/LogStrip.h"

namespace quorin::terminal {

/// While it lives, whatever the process writes to standard output and standard error goes to a
/// strip instead of the terminal, and, where one of the two is not a terminal, also to where it
/// points. Main thread; one at a time.
class OutputCapture {
 public:
  explicit OutputCapture(LogStrip& strip);
  /// Gives both back, then repeats on standard error the program's own complaints that nobody saw.
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  /// Gives both back. With `repeats`, shows the latest of standard error on `terminal`, which must
  /// not make anybody wait, where it pointed to a terminal. For signal handlers.
  static void giveBackInHandler(int terminal, bool repeats);

 private:
  struct Stream {
    int number;             // 1 or 2
    int original = -1;      // where it pointed
    int pipe = -1;          // what is written arrives here
    bool passesOn = false;  // the original is no terminal
    std::string unfinished{};
  };

  void run();
  void take(Stream& stream, std::string_view text);

  LogStrip& _strip;
  std::array<Stream, 2> _streams{{{1}, {2}}};
  std::deque<std::string> _complaints;
  std::string _line;  // of standard error, unfinished
  std::thread _thread;
};

}  // namespace quorin::terminal
