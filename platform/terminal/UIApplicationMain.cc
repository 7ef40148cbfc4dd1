#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "platform/launch/Launch.h"
#include "platform/terminal/EventThread.h"
#include "platform/terminal/show_screen.h"
#include "platform/text/show_text.h"

namespace quorin {

namespace {

struct TerminalArguments {
  LaunchArguments launch;
  std::vector<std::string> pages;
  bool text = false;
  bool screen = false;
};

void addTo(CLI::App& app, TerminalArguments& arguments) {
  quorin::addTo(app, arguments.launch);
  auto* text = app.add_flag("--text", arguments.text, "Print the pages as text");
  auto* screen = app.add_flag("--screen", arguments.screen,
                              "Show the pages on the terminal even when standard output goes "
                              "elsewhere; the log lines go there");
  auto* pages = app.add_option("--pages", arguments.pages,
                               "Print these pages as text, such as \"LTE RRC State\"")
                    ->delimiter(',');
  screen->excludes(text)->excludes(pages);
  app.footer(
      "On a terminal the pages are shown on its screen; ? there lists the keys. Where standard\n"
      "output is no terminal they are printed as text, each when it changed.");
}

/// The terminal that the pages are to be shown on, or empty: they are printed.
std::optional<terminal::Terminal> chosenTerminal(const TerminalArguments& arguments) {
  const bool text = arguments.text || !arguments.pages.empty();
  if (text || (!arguments.screen && !isatty(STDOUT_FILENO))) return std::nullopt;
  terminal::Terminal terminal = terminal::openTerminal();
  if (terminal.error.empty()) return terminal;
  std::cerr << "quorin: " << terminal.error << "; the pages are printed as text\n";
  return std::nullopt;
}

}  // namespace

int UIApplicationMain(int argc, char** argv, std::optional<std::string> /*principalClassName*/,
                      std::string_view delegateClassName, const UIStoryboard& storyboard) {
  CLI::App app("quorin: what the cellular modem is doing now, as pages in a terminal");
  TerminalArguments arguments;
  addTo(app, arguments);
  if (const auto status = parse(app, argc, argv)) return *status;
  const auto terminal = chosenTerminal(arguments);
  if (terminal) terminal::blockTerminalSignals();
  Launch launch(arguments.launch);
  const bool quiet = arguments.launch.quiet;
  return terminal ? terminal::showScreen(launch, quiet, *terminal, delegateClassName, storyboard)
                  : showText(launch, quiet, arguments.pages, delegateClassName, storyboard);
}

}  // namespace quorin
