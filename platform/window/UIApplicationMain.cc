#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

#include "platform/foundation/log.h"
#include "platform/launch/Launch.h"
#include "platform/window/MainLoop.h"
#include "platform/window/WindowScreen.h"

namespace quorin {

namespace {

struct WindowArguments {
  std::string size;
  std::string colors;
  double textScale = 0;
};

void addTo(CLI::App& app, WindowArguments& arguments) {
  app.add_option("--size", arguments.size, "Size of the window in pixels, such as 390x844")
      ->check([](const std::string& text) {
        int width = 0;
        int height = 0;
        char rest = 0;
        const bool valid = std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest) == 2 &&
                           width >= 100 && width <= 16384 && height >= 100 && height <= 16384;
        return valid ? "" : "'" + text + "' is no size: such as 390x844, from 100x100 on";
      });
  app.add_option("--colors", arguments.colors, "light or dark, whatever the desktop prefers")
      ->check(CLI::IsMember({"light", "dark"}));
  app.add_option("--text-scale", arguments.textScale, "How large text is, whatever the desktop says")
      ->check(CLI::Range(0.5, 3.0));
}

WindowLook lookOf(const WindowArguments& arguments) {
  WindowLook look;
  if (!arguments.size.empty())
    std::sscanf(arguments.size.c_str(), "%dx%d", &look.size.rwidth(), &look.size.rheight());
  if (!arguments.colors.empty()) look.dark = arguments.colors == "dark";
  if (arguments.textScale > 0) look.textScale = arguments.textScale;
  return look;
}

/// Qt's words as one line; ends the program where Qt would abort, as without a display.
void sayInOneLine(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  const std::string line = text.simplified().toStdString();
  std::fprintf(stderr, "quorin: %s\n", line.c_str());
  if (type != QtFatalMsg) return;
  std::fflush(stderr);
  _exit(2);
}

bool hasDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    if (const char* value = std::getenv(name); value && *value) return true;
  return false;
}

int run(int& argc, char** argv, const LaunchArguments& launchArguments,
        const WindowArguments& arguments, std::string_view delegateClassName,
        const UIStoryboard& storyboard) {
  Launch launch(launchArguments);
  if (!launch.open()) return 2;
  if (launchArguments.quiet) {
    setPrintSink([](std::string_view) {});
    if (!systemLoggerListens()) setSystemLogSink([](std::string_view) {});
  }
  qInstallMessageHandler(sayInOneLine);
  QGuiApplication qt(argc, argv);
  QGuiApplication::setApplicationName("quorin");
  QGuiApplication::setApplicationDisplayName("Quorin");
  QGuiApplication::setDesktopFileName("org.quorin.viewer");

  UIApplication application(storyboard);
  application.launch(delegateClassName);
  const MainLoop loop;
  const WindowScreen screen(application, lookOf(arguments));
  if (!screen.window()) return 2;
  launch.start(/*endsWithRecording=*/false, [] { QGuiApplication::quit(); });
  const int status = QGuiApplication::exec();
  application.terminate();
  return status != 0 ? status : launch.unreadable() ? 1 : 0;
}

}  // namespace

int UIApplicationMain(int argc, char** argv, std::optional<std::string> /*principalClassName*/,
                      std::string_view delegateClassName, const UIStoryboard& storyboard) {
  CLI::App app("quorin: what the cellular modem is doing now, in a window");
  LaunchArguments launchArguments;
  WindowArguments arguments;
  addTo(app, launchArguments);
  addTo(app, arguments);
  if (const auto status = parse(app, argc, argv)) return *status;
  if (!hasDisplay()) {
    std::fputs("quorin: there is no display; in a terminal: quorin-terminal\n", stderr);
    return 2;
  }
  return run(argc, argv, launchArguments, arguments, delegateClassName, storyboard);
}

}  // namespace quorin
