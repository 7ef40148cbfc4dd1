#include "platform/terminal/capabilities.h"

#include <ncursesw/curses.h>
#include <ncursesw/term.h>

namespace quorin::terminal {

namespace {

std::string capability(const char* name) {
  const char* text = tigetstr(name);
  return text && text != reinterpret_cast<char*>(-1) ? text : "";
}

std::string* output = nullptr;

int append(int c) {
  *output += static_cast<char>(c);
  return c;
}

/// With its padding resolved.
std::string resolved(const std::string& sequence) {
  std::string text;
  output = &text;
  tputs(sequence.c_str(), 1, append);
  return text;
}

}  // namespace

std::string unfitness(const std::string& type, int descriptor) {
  if (type.empty()) return "TERM is not set";
  int found = 0;
  if (setupterm(type.c_str(), descriptor, &found) != OK)
    return "the terminal type \"" + type + "\" is not known here";
  const bool placesItsCursor = !capability("cup").empty();
  del_curterm(cur_term);
  return placesItsCursor ? "" : "a terminal of type \"" + type + "\" cannot place its cursor";
}

std::string restoreSequence(int rows) {
  std::string sequence = resolved(capability("sgr0")) + resolved(capability("op"));
  if (!capability("kmous").empty()) sequence += "\033[?1006;1000l";
  sequence += resolved(capability("cnorm")) + resolved(capability("rmkx"));
  const std::string leave = resolved(capability("rmcup"));
  if (!leave.empty()) return sequence + leave + '\r';
  const std::string place = tparm(capability("cup").c_str(), rows - 1, 0, 0, 0, 0, 0, 0, 0, 0);
  return sequence + resolved(place) + "\r\n";
}

}  // namespace quorin::terminal
