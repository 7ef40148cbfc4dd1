#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace quorin::terminal {

/// The latest lines of standard output and standard error, oldest forgotten first. Any thread.
class LogStrip {
 public:
  static constexpr std::size_t kLines = 1000;
  static constexpr std::size_t kLongestLine = 4000;  // bytes; a longer one goes on as another

  /// Takes text as it was written; a line is one once its end came or it is too long.
  void add(std::string& unfinished, std::string_view text);
  /// So many lines before the `end`th since the beginning, oldest first, as far as they are kept.
  [[nodiscard]] std::vector<std::string> before(std::size_t end, std::size_t lines) const;
  /// How many lines came so far.
  [[nodiscard]] std::size_t count() const;

  /// Called on the adding thread whenever there are more lines. Main thread.
  void setOnAdd(std::function<void()> onAdd);

 private:
  void addLine(std::string line);

  mutable std::mutex _mutex;
  std::deque<std::string> _lines;
  std::size_t _count = 0;
  std::function<void()> _onAdd;
};

}  // namespace quorin::terminal
