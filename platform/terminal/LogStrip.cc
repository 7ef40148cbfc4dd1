#include "platform/terminal/LogStrip.h"

#include <algorithm>
#include <utility>

namespace quorin::terminal {

void LogStrip::add(std::string& unfinished, std::string_view text) {
  std::function<void()> onAdd;
  {
    const std::lock_guard lock(_mutex);
    const std::size_t before = _count;
    for (char c : text) {
      if (c != '\n') unfinished += c;
      if (c == '\n' || unfinished.size() >= kLongestLine)
        addLine(std::exchange(unfinished, std::string()));
    }
    if (_count != before) onAdd = _onAdd;
  }
  if (onAdd) onAdd();
}

void LogStrip::addLine(std::string line) {
  if (_lines.size() == kLines) _lines.pop_front();
  _lines.push_back(std::move(line));
  ++_count;
}

std::vector<std::string> LogStrip::before(std::size_t end, std::size_t lines) const {
  const std::lock_guard lock(_mutex);
  const std::size_t forgotten = _count - _lines.size();
  const std::size_t last = std::clamp(end, forgotten, _count) - forgotten;
  const std::size_t first = last - std::min(lines, last);
  return {_lines.begin() + static_cast<std::ptrdiff_t>(first),
          _lines.begin() + static_cast<std::ptrdiff_t>(last)};
}

std::size_t LogStrip::count() const {
  const std::lock_guard lock(_mutex);
  return _count;
}

void LogStrip::setOnAdd(std::function<void()> onAdd) {
  const std::lock_guard lock(_mutex);
  _onAdd = std::move(onAdd);
}

}  // namespace quorin::terminal
