#include "platform/terminal/CursesDisplay.h"

#include <fcntl.h>
#include <langinfo.h>
#include <ncursesw/curses.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>

#include "platform/foundation/fatal.h"
#include "platform/terminal/capabilities.h"
#include "platform/terminal/keys.h"

namespace quorin::terminal {

namespace {

constexpr int kEscapeDelay = 25;  // milliseconds until an Esc is no longer the start of a key
constexpr int kWheelRows = 3;

/// How a style looks: attributes, and colours where there are some; -1 is the terminal's own.
struct Look {
  attr_t attributes;
  short ink;
  short paper;
};

/// One row for each style; its looks without colours, with few of them, and with 256.
struct StyleRow {
  Style style;
  Look plain;
  Look few;
  Look many;
};

// What comes and goes often, a row's value, mark and trend, looks the same as the row: over a slow
// line each change of looks costs more than the value.
constexpr StyleRow kStyles[] = {
    {Style::plain, {A_NORMAL, -1, -1}, {A_NORMAL, -1, -1}, {A_NORMAL, -1, -1}},
    {Style::bar, {A_REVERSE, -1, -1}, {A_REVERSE, -1, -1}, {A_NORMAL, 250, 236}},
    {Style::barTitle,
     {A_REVERSE | A_BOLD, -1, -1},
     {A_REVERSE | A_BOLD, -1, -1},
     {A_BOLD, 255, 236}},
    {Style::header, {A_BOLD, -1, -1}, {A_BOLD, COLOR_CYAN, -1}, {A_BOLD, 31, -1}},
    {Style::quiet, {A_DIM, -1, -1}, {A_DIM, -1, -1}, {A_NORMAL, 244, -1}},
    {Style::changed, {A_NORMAL, -1, -1}, {A_NORMAL, -1, -1}, {A_NORMAL, -1, -1}},
    {Style::selected, {A_REVERSE, -1, -1}, {A_REVERSE, -1, -1}, {A_NORMAL, 255, 25}},
    {Style::open, {A_BOLD, -1, -1}, {A_BOLD, -1, -1}, {A_BOLD, -1, -1}},
    {Style::prompt, {A_BOLD, -1, -1}, {A_BOLD, -1, -1}, {A_BOLD, -1, -1}},
};

struct KeyCode {
  int code;  // as curses has it
  char32_t key;
};

constexpr KeyCode kKeyCodes[] = {
    {KEY_UP, key::kUp},
    {KEY_DOWN, key::kDown},
    {KEY_LEFT, key::kLeft},
    {KEY_RIGHT, key::kRight},
    {KEY_PPAGE, key::kPageUp},
    {KEY_NPAGE, key::kPageDown},
    {KEY_HOME, key::kHome},
    {KEY_END, key::kEnd},
    {KEY_BTAB, key::kBackTab},
    {KEY_ENTER, key::kEnter},
    {KEY_BACKSPACE, key::kBackspace},
    {KEY_DC, key::kBackspace},
};

short pairOf(Style style) { return static_cast<short>(static_cast<int>(style) + 1); }

const StyleRow& rowOf(Style style) { return *std::ranges::find(kStyles, style, &StyleRow::style); }

int& coloursInUse() {
  static int colours = 0;
  return colours;
}

const Look& lookOf(Style style) {
  const StyleRow& row = rowOf(style);
  return coloursInUse() >= 256 ? row.many : coloursInUse() >= 8 ? row.few : row.plain;
}

bool localeIsUtf8() { return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0; }

/// The locale's name as the environment says.
std::string localeName() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"})
    if (const char* value = std::getenv(variable); value && *value) return value;
  return "";
}

/// A descriptor of this terminal that is ours alone.
int reopened(const char* path) { return open(path, O_RDWR | O_NOCTTY | O_CLOEXEC); }

std::optional<Input> mouseInput() {
  MEVENT event;
  if (getmouse(&event) != OK) return std::nullopt;
  Input input{Input::Kind::wheel, 0, event.y, event.x, 0};
  if ((event.bstate & BUTTON4_PRESSED) != 0) input.rows = -kWheelRows;
  if ((event.bstate & BUTTON5_PRESSED) != 0) input.rows = kWheelRows;
  if ((event.bstate & BUTTON1_PRESSED) != 0) input.kind = Input::Kind::click;
  return input;
}

}  // namespace

Charset takeLocale() {
  if (!std::setlocale(LC_CTYPE, "")) {
    std::string name = localeName();
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
    if (name.ends_with("utf-8") || name.ends_with("utf8")) std::setlocale(LC_CTYPE, "C.UTF-8");
  }
  return localeIsUtf8() ? Charset::unicode : Charset::ascii;
}

Terminal openTerminal() {
  Terminal terminal;
  const char* type = std::getenv("TERM");
  terminal.type = type ? type : "";
  terminal.descriptor = reopened("/dev/tty");
  const int error = errno;
  if (const char* path = ttyname(STDOUT_FILENO); terminal.descriptor < 0 && path)
    terminal.descriptor = reopened(path);
  if (terminal.descriptor < 0)
    terminal.error = std::string("the terminal cannot be opened: ") + std::strerror(error);
  else
    terminal.error = unfitness(terminal.type, terminal.descriptor);
  return terminal;
}

CursesDisplay::CursesDisplay(const Terminal& terminal)
    : _descriptor(terminal.descriptor),
      _guard(terminal.descriptor),
      _out(fdopen(fcntl(terminal.descriptor, F_DUPFD_CLOEXEC, 3), "w")),
      _in(fdopen(fcntl(terminal.descriptor, F_DUPFD_CLOEXEC, 3), "r")),
      _charset(takeLocale()) {
  set_escdelay(kEscapeDelay);
  SCREEN* screen = _out && _in ? newterm(terminal.type.c_str(), _out, _in) : nullptr;
  if (!screen) fatal();
  _screen = screen;
  ::signal(SIGTSTP, SIG_DFL);
  _guard.own(restoreSequence(rows()));
  cbreak();
  noecho();
  nonl();
  keypad(stdscr, TRUE);
  nodelay(stdscr, TRUE);
  idlok(stdscr, TRUE);
  leaveok(stdscr, TRUE);
  curs_set(0);
  mouseinterval(0);
  setMouse(true);
  chooseLooks();
  fit();
}

CursesDisplay::~CursesDisplay() {
  endwin();
  _guard.disown();
  delscreen(static_cast<SCREEN*>(_screen));
  std::fclose(_out);
  std::fclose(_in);
  close(_descriptor);
}

void CursesDisplay::chooseLooks() {
  coloursInUse() = 0;
  if (std::getenv("NO_COLOR") || !has_colors()) return;
  start_color();
  if (use_default_colors() != OK) return;
  coloursInUse() = COLORS;
  for (const StyleRow& row : kStyles) {
    const Look& look = lookOf(row.style);
    init_pair(pairOf(row.style), look.ink, look.paper);
  }
}

int CursesDisplay::rows() const { return getmaxy(stdscr); }
int CursesDisplay::columns() const { return getmaxx(stdscr); }

void CursesDisplay::show(const Canvas& canvas) {
  const bool all =
      !_shown || _shown->rows() != canvas.rows() || _shown->columns() != canvas.columns();
  for (int row = 0; row < canvas.rows(); ++row)
    for (int column = 0; column < canvas.columns(); ++column) {
      const Cell& cell = canvas.at(row, column);
      if (cell.glyph.columns == 0 || (!all && _shown->at(row, column) == cell)) continue;
      const Look& look = lookOf(cell.style);
      const bool coloured = look.ink >= 0 || look.paper >= 0;
      cchar_t character;
      setcchar(&character, cell.glyph.text.data(), look.attributes,
               coloured ? pairOf(cell.style) : short{0}, nullptr);
      mvwadd_wch(stdscr, row, column, &character);
    }
  _shown = canvas;
  refresh();
}

std::optional<Input> CursesDisplay::next() {
  wint_t code = 0;
  while (true) {
    const int kind = wget_wch(stdscr, &code);
    if (kind == ERR) return std::nullopt;
    if (kind == OK) {
      const auto character = static_cast<char32_t>(code);
      return Input{Input::Kind::key,
                   character == 0x7f || character == '\b' ? key::kBackspace : character};
    }
    if (code == KEY_MOUSE) {
      const auto input = mouseInput();
      if (input) return input;
      continue;
    }
    const auto* known = std::ranges::find(kKeyCodes, static_cast<int>(code), &KeyCode::code);
    if (known != std::end(kKeyCodes)) return Input{Input::Kind::key, known->key};
  }
}

void CursesDisplay::fit() {
  winsize size{};
  if (ioctl(_descriptor, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return;
  if (size.ws_row == rows() && size.ws_col == columns()) return;
  resizeterm(size.ws_row, size.ws_col);
  erase();
  _shown.reset();
  _guard.own(restoreSequence(rows()));
}

void CursesDisplay::repaint() {
  clearok(curscr, TRUE);
  _shown.reset();
}

void CursesDisplay::setMouse(bool ours) {
  _mouse = ours;
  mousemask(ours ? BUTTON1_PRESSED | BUTTON4_PRESSED | BUTTON5_PRESSED : 0, nullptr);
}

void CursesDisplay::suspend() {
  endwin();
  _guard.disown();
  sigset_t stop;
  sigemptyset(&stop);
  sigaddset(&stop, SIGTSTP);
  raise(SIGTSTP);  // pending, since nobody here takes it otherwise
  pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
  pthread_sigmask(SIG_BLOCK, &stop, nullptr);
  _guard.own(restoreSequence(rows()));
}

}  // namespace quorin::terminal
