#pragma once

#include "platform/launch/Launch.h"
#include "platform/terminal/CursesDisplay.h"
#include "platform/toolkit/UIApplication.h"

namespace quorin::terminal {

/// Runs the application with its pages on the terminal and its log lines, unless it is to be quiet,
/// in a strip there. Gives the program's exit code.
/// Requires: a terminal without an error; its signals were blocked before the launch was made.
[[nodiscard]] int showScreen(Launch& launch, bool quiet, const Terminal& terminal,
                             std::string_view delegateClassName, const UIStoryboard& storyboard);

}  // namespace quorin::terminal
