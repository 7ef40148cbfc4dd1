#pragma once

#include <string>
#include <vector>

#include "platform/launch/Launch.h"
#include "platform/toolkit/UIApplication.h"

namespace quorin {

/// Runs the application with its pages printed on standard output, the named ones or all, between
/// its log lines, unless it is to be quiet. Gives the program's exit code.
[[nodiscard]] int showText(Launch& launch, bool quiet, const std::vector<std::string>& pages,
                           std::string_view delegateClassName, const UIStoryboard& storyboard);

}  // namespace quorin
