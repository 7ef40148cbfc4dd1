#include "platform/terminal/keys.h"

#include <algorithm>

namespace quorin::terminal {

namespace {

// clang-format off
// "l" is the log's and not a way to the right.
constexpr KeyRow kKeyRows[] = {
    {Action::up,           {key::kUp, 'k'},                       "↑ k",           "row before"},
    {Action::down,         {key::kDown, 'j'},                     "↓ j",           "row after"},
    {Action::pageUp,       {key::kPageUp, key::control('b')},     "PgUp Ctrl-B",   "screen before"},
    {Action::pageDown,     {key::kPageDown, key::control('f'), ' '}, "PgDn Ctrl-F Space", "screen after"},
    {Action::first,        {key::kHome, 'g'},                     "Home g",        "first row"},
    {Action::last,         {key::kEnd, 'G'},                      "End G",         "last row"},
    {Action::open,         {key::kEnter, '\n'},                   "Enter",         "open the row's page"},
    {Action::close,        {key::kEscape, key::kBackspace},       "Esc Backspace", "close the page"},
    {Action::quit,         {'q'},                                 "q",             "close the page; on the first one, quit"},
    {Action::left,         {key::kLeft, 'h', key::kBackTab},      "← h Shift-Tab", "page before, which leaves this one open"},
    {Action::right,        {key::kRight, key::kTab},              "→ Tab",         "open page behind"},
    {Action::find,         {'/'},                                 "/",             "find in the page"},
    {Action::findNext,     {'n'},                                 "n",             "find the next"},
    {Action::findPrevious, {'N'},                                 "N",             "find the one before"},
    {Action::log,          {'l'},                                 "l",             "log lines: show or hide"},
    {Action::logOlder,     {'<'},                                 "<",             "older log lines"},
    {Action::logNewer,     {'>'},                                 ">",             "newer log lines"},
    {Action::mouse,        {'m'},                                 "m",             "mouse: ours or the terminal's"},
    {Action::repaint,      {key::control('l')},                   "Ctrl-L",        "paint the screen anew"},
    {Action::help,         {'?'},                                 "?",             "this page; any other key leaves it"},
};
// clang-format on

}  // namespace

std::span<const KeyRow> keyRows() { return kKeyRows; }

const KeyRow* keyRow(char32_t pressed) {
  const auto* row = std::ranges::find_if(kKeyRows, [&](const KeyRow& candidate) {
    return pressed != 0 && std::ranges::find(candidate.keys, pressed) != candidate.keys.end();
  });
  return row == std::end(kKeyRows) ? nullptr : row;
}

}  // namespace quorin::terminal
