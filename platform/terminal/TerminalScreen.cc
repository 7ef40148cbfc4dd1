#include "platform/terminal/TerminalScreen.h"

#include <algorithm>
#include <utility>

namespace quorin::terminal {

namespace {

constexpr Milliseconds kAgeInterval{1000};

void removeLastCharacter(std::string& text) {
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xc0) == 0x80) text.pop_back();
  if (!text.empty()) text.pop_back();
}

}  // namespace

TerminalScreen::TerminalScreen(UIApplication& application, LogStrip& strip, ScreenRequests requests)
    : _strip(strip), _requests(std::move(requests)), _stack(application) {
  for (std::size_t level = 0; level < _stack.pages().size(); ++level)
    _views.push_back(std::make_unique<PageView>(*_stack.pages()[level], _requests.draw));
  _focus = _views.size() - 1;
  _stack.setObserver(this);
}

TerminalScreen::~TerminalScreen() {
  _stack.setObserver(nullptr);
  if (_ageTimer) _ageTimer->invalidate();
}

void TerminalScreen::didPush() {
  _views.push_back(std::make_unique<PageView>(_stack.top(), _requests.draw));
}

void TerminalScreen::willPop() { _views.pop_back(); }

void TerminalScreen::press(char32_t pressed) {
  _message.clear();
  if (_help)
    pressInHelp(pressed);
  else if (_typed)
    type(pressed);
  else if (const KeyRow* row = keyRow(pressed))
    act(row->action);
  _requests.draw();
}

void TerminalScreen::act(Action action) {
  switch (action) {
    case Action::up: return view().move(-1);
    case Action::down: return view().move(1);
    case Action::pageUp: return view().moveByScreens(-1);
    case Action::pageDown: return view().moveByScreens(1);
    case Action::first: return view().moveToEnd(false);
    case Action::last: return view().moveToEnd(true);
    case Action::open: return open();
    case Action::close: return close();
    case Action::quit: return _focus == 0 ? _requests.quit() : close();
    case Action::left: _focus -= _focus == 0 ? 0 : 1; return;
    case Action::right: _focus = std::min(_focus + 1, _views.size() - 1); return;
    case Action::find:
      _typed.emplace();
      _origin = view().selection();
      return;
    case Action::findNext: return findAgain(false);
    case Action::findPrevious: return findAgain(true);
    case Action::log: return toggleLog();
    case Action::logOlder: return scrollLog(1 - _logArea.rows);
    case Action::logNewer: return scrollLog(_logArea.rows - 1);
    case Action::mouse: return toggleMouse();
    case Action::repaint: return _requests.repaint();
    case Action::help:
      _help = true;
      _helpTop = 0;
      return;
  }
}

void TerminalScreen::open() {
  if (_stack.press(_focus, view().selection())) ++_focus;
}

void TerminalScreen::close() {
  if (_focus == 0) return;
  const std::size_t level = _focus--;
  while (_views.size() > level) _stack.back();
}

void TerminalScreen::toggleLog() {
  _log = !_log;
  _logEnd.reset();
}

void TerminalScreen::scrollLog(int lines) {
  if (!_log) return;
  const auto count = static_cast<std::ptrdiff_t>(_strip.count());
  const auto kept = std::min(count, static_cast<std::ptrdiff_t>(LogStrip::kLines));
  const std::ptrdiff_t oldest = count - kept + std::max(_logArea.rows - 1, 1);
  const auto end = static_cast<std::ptrdiff_t>(_logEnd.value_or(_strip.count())) + lines;
  _logEnd.reset();
  if (end < count && oldest < count) _logEnd = static_cast<std::size_t>(std::max(end, oldest));
}

void TerminalScreen::toggleMouse() {
  _mouse = !_mouse;
  _requests.takeMouse(_mouse);
  _message = _mouse ? "the mouse selects and scrolls here" : "the mouse is the terminal's";
}

void TerminalScreen::type(char32_t pressed) {
  if (pressed == key::kEscape || (pressed == key::kBackspace && _typed->empty())) {
    view().select(_origin);
    _typed.reset();
  } else if (pressed == key::kEnter || pressed == '\n') {
    if (!_typed->empty()) _sought = *_typed;
    _typed.reset();
    if (!_sought.empty()) findFrom(_origin);
  } else if (pressed == key::kBackspace) {
    removeLastCharacter(*_typed);
    findFrom(_origin);
  } else if (pressed >= ' ' && pressed < key::kBackspace) {
    *_typed += textOf(Glyph{{static_cast<wchar_t>(pressed)}, 1});
    findFrom(_origin);
  }
}

void TerminalScreen::findFrom(std::size_t line) {
  const std::string& text = _typed ? *_typed : _sought;
  if (const auto found = view().page().find(text, line))
    view().select(*found);
  else
    _message = "\"" + text + "\" is not on this page";
}

void TerminalScreen::findAgain(bool before) {
  if (_sought.empty()) {
    _message = "nothing to find yet; / asks for it";
    return;
  }
  const std::size_t line = view().selection();
  const auto found =
      before ? view().page().findBefore(_sought, line) : view().page().find(_sought, line + 1);
  if (found)
    view().select(*found);
  else
    _message = "\"" + _sought + "\" is not on this page";
}

void TerminalScreen::pressInHelp(char32_t pressed) {
  const KeyRow* row = keyRow(pressed);
  const Action action = row ? row->action : Action::close;
  if (action == Action::up)
    --_helpTop;
  else if (action == Action::down || action == Action::pageDown)
    ++_helpTop;
  else if (action == Action::pageUp)
    _helpTop = 0;
  else
    _help = false;
}

void TerminalScreen::click(int row, int column) {
  _message.clear();
  _typed.reset();
  if (std::exchange(_help, false)) return _requests.draw();
  for (std::size_t level = 0; level < _views.size(); ++level) {
    const auto line = _views[level]->lineAt(row, column);
    if (!line) continue;
    const bool again = level == _focus && *line == _views[level]->selection();
    _focus = level;
    if (again) {
      open();
    } else if (!_stack.pages()[level]->lines()[*line].isHeader()) {
      _views[level]->select(*line);
    }
    break;
  }
  _requests.draw();
}

void TerminalScreen::wheel(int row, int column, int rows) {
  if (_help) {
    _helpTop += rows;
  } else if (_log && row >= _logArea.row && row < _logArea.row + _logArea.rows) {
    scrollLog(rows);
  } else {
    for (const auto& view : _views)
      if (view->isAt(row, column)) view->scroll(rows);
  }
  _requests.draw();
}

void TerminalScreen::refreshAge() {
  const bool ages = age().ends_with("ago");
  if (!ages && _ageTimer) {
    _ageTimer->invalidate();
    _ageTimer.reset();
  } else if (ages && !_ageTimer) {
    _ageTimer = scheduleTimer(kAgeInterval, _requests.draw);
  }
}

}  // namespace quorin::terminal
