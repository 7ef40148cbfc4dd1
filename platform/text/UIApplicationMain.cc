#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "platform/bus/BusManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/queue.h"
#include "platform/foundation/log.h"
#include "platform/recording/RecordingPlayer.h"
#include "platform/text/TextScreen.h"
#include "platform/text/columns.h"

namespace quorin {

namespace {

constexpr Milliseconds kPlayerInterval{10};

volatile std::sig_atomic_t gInterrupted = 0;

struct Options {
  std::string recording;
  std::string speed = "1";
  double seconds = 0;
  std::vector<std::string> pages;
  bool quiet = false;
};

void addTo(CLI::App& app, Options& options) {
  app.add_option("--recording", options.recording, "Recording to play instead of a modem");
  app.add_option("--speed", options.speed, "How many times faster than recorded, or max")
      ->check([](const std::string& text) {
        Speed speed;
        return readSpeed(text, speed) ? "" : "'" + text + "' is no speed: a number above 0, or max";
      });
  app.add_option("--seconds", options.seconds, "End after so many seconds")
      ->check([](const std::string& text) {
        char* end = nullptr;
        const double seconds = std::strtod(text.c_str(), &end);
        const bool valid = end != text.c_str() && *end == '\0' && seconds > 0 && seconds <= 1e9;
        return valid ? "" : "'" + text + "' is no number of seconds above 0";
      });
  app.add_option("--pages", options.pages, "Pages to print, such as \"LTE RRC State\"; all without")
      ->delimiter(',');
  app.add_flag("--quiet", options.quiet, "Leave out the application's log lines");
}

bool wantsColour() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) && !std::getenv("NO_COLOR") && terminal &&
         std::string_view(terminal) != "dumb";
}

/// How a log channel looks on this terminal or file: left out, stepping back behind the pages, or
/// as it is.
LogSink shownAs(LogSink plain, const Options& options, const TextStyle& style, bool terminal) {
  if (options.quiet) return [](std::string_view) {};
  if (!terminal) return plain;
  return [style, plain = std::move(plain)](std::string_view line) {
    plain(style.quiet + printable(line) + style.end);
  };
}

void setUpLogs(const Options& options, const TextStyle& style) {
  setPrintSink(shownAs(standardOutputSink(), options, style, isatty(STDOUT_FILENO) != 0));
  if (!systemLoggerListens())
    setSystemLogSink(shownAs(standardErrorSink(), options, style, isatty(STDERR_FILENO) != 0));
}

class TextApplication {
 public:
  explicit TextApplication(const Options& options) : _options(options) {}

  int run(std::string_view delegateClassName, const UIStoryboard& storyboard) {
    if (!openRecording()) return 2;
    const TextStyle style =
        wantsColour() ? TextStyle{"\033[1m", "\033[2m", "\033[0m"} : TextStyle{};
    setUpLogs(_options, style);
    UIApplication application(storyboard);
    application.launch(delegateClassName);
    TextScreen screen(style);
    const auto unknown =
        screen.openPages(application, {_options.pages.begin(), _options.pages.end()});
    for (const std::string& key : unknown)
      std::cerr << "quorin: no page is called \"" << key << "\"\n";
    if (!unknown.empty()) return 2;
    loop();
    if (!gInterrupted) screen.printAll();
    application.terminate();
    return _unreadable ? 1 : 0;
  }

 private:
  bool openRecording() {
    if (_options.recording.empty()) return bus::install(), true;
    Speed speed;
    (void)readSpeed(_options.speed, speed);
    _service.install();
    _player.emplace(_options.recording, speed, _service);
    if (_player->recording().error().empty()) return true;
    std::cerr << "quorin: " << _player->recording().error() << '\n';
    return false;
  }

  void loop() {
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, [](int) { gInterrupted = 1; });
    RunLoop& runLoop = RunLoop::mainRunLoop();
    const bool endsByItself = _player && !isatty(STDOUT_FILENO);
    const Milliseconds end =
        currentClock().uptime() + Milliseconds(static_cast<std::int64_t>(_options.seconds * 1000));
    scheduleTimer(kPlayerInterval, [&] {
      play();
      const bool late = _options.seconds > 0 && currentClock().uptime() >= end;
      if (gInterrupted || late || (endsByItself && _player->isOver())) runLoop.stop();
    });
    runLoop.run();
    while (runLoop.runOnce() && !gInterrupted) {
    }
  }

  void play() {
    if (!_player) return;
    _player->step();
    for (const std::string& line : _player->recording().unreadableLines()) {
      std::cerr << "quorin: " << line << '\n';
      _unreadable = true;
    }
  }

  Options _options;
  Loopback _service;
  std::optional<RecordingPlayer> _player;
  bool _unreadable = false;
};

}  // namespace

int UIApplicationMain(int argc, char** argv, std::optional<std::string> /*principalClassName*/,
                      std::string_view delegateClassName, const UIStoryboard& storyboard) {
  CLI::App app("quorin: what the cellular modem is doing now, as pages of text");
  app.failure_message([](const CLI::App* /*app*/, const CLI::Error& error) {
    return std::string("quorin: ") + error.what() + "; --help tells more\n";
  });
  Options options;
  addTo(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  return TextApplication(options).run(delegateClassName, storyboard);
}

}  // namespace quorin
