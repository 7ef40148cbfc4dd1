#include "platform/text/show_text.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/log.h"
#include "platform/text/TextScreen.h"
#include "platform/text/columns.h"

namespace quorin {

namespace {

bool wantsColour() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) && !std::getenv("NO_COLOR") && terminal &&
         std::string_view(terminal) != "dumb";
}

/// How a log channel looks on this terminal or file: left out, stepping back behind the pages, or
/// as it is.
LogSink shownAs(LogSink plain, bool quiet, const TextStyle& style, bool terminal) {
  if (quiet) return [](std::string_view) {};
  if (!terminal) return plain;
  return [style, plain = std::move(plain)](std::string_view line) {
    plain(style.quiet + printable(line) + style.end);
  };
}

void setUpLogs(bool quiet, const TextStyle& style) {
  setPrintSink(shownAs(standardOutputSink(), quiet, style, isatty(STDOUT_FILENO) != 0));
  if (!systemLoggerListens())
    setSystemLogSink(shownAs(standardErrorSink(), quiet, style, isatty(STDERR_FILENO) != 0));
}

}  // namespace

int showText(Launch& launch, bool quiet, const std::vector<std::string>& pages,
             std::string_view delegateClassName, const UIStoryboard& storyboard) {
  if (!launch.open()) return 2;
  const TextStyle style = wantsColour() ? TextStyle{"\033[1m", "\033[2m", "\033[0m"} : TextStyle{};
  setUpLogs(quiet, style);
  UIApplication application(storyboard);
  application.launch(delegateClassName);
  TextScreen screen(style);
  const auto unknown = screen.openPages(application, {pages.begin(), pages.end()});
  for (const std::string& key : unknown)
    std::cerr << "quorin: no page is called \"" << key << "\"\n";
  if (!unknown.empty()) return 2;
  RunLoop& runLoop = RunLoop::mainRunLoop();
  launch.start(/*endsWithRecording=*/!isatty(STDOUT_FILENO), [&] { runLoop.stop(); });
  runLoop.run();
  while (launch.signal() == 0 && runLoop.runOnce()) {
  }
  if (launch.signal() == 0) screen.printAll();
  application.terminate();
  return launch.unreadable() ? 1 : 0;
}

}  // namespace quorin
