#include "platform/launch/Launch.h"

#include <signal.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "platform/bus/BusManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/queue.h"

namespace quorin {

namespace {

constexpr Milliseconds kPlayerTick{10};

/// The signals that ask a program to end.
const sigset_t& endingSignals() {
  static const sigset_t signals = [] {
    sigset_t set;
    sigemptyset(&set);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signal);
    return set;
  }();
  return signals;
}

/// How long the main thread may take to end.
constexpr timespec kLongestEnd{5, 0};

/// Posts the first signal's number to the main queue. The second ends the program there and then,
/// in case its main thread hangs, and so does the time that it took.
void awaitSignals(const std::function<void(int)>& received) {
  int signal = 0;
  sigwait(&endingSignals(), &signal);
  dispatch_async(dispatch_get_main_queue(), [received, signal] { received(signal); });
  int second = 0;
  do second = sigtimedwait(&endingSignals(), nullptr, &kLongestEnd);
  while (second < 0 && errno == EINTR);
  if (second > 0) signal = second;
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  if (action.sa_handler == SIG_IGN) std::signal(signal, SIG_DFL);
  std::raise(signal);
  pthread_sigmask(SIG_UNBLOCK, &endingSignals(), nullptr);
}

std::string speedError(const std::string& text) {
  Speed speed;
  return readSpeed(text, speed) ? "" : "'" + text + "' is no speed: a number above 0, or max";
}

std::string secondsError(const std::string& text) {
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  const bool valid = end != text.c_str() && *end == '\0' && seconds > 0 && seconds <= 1e9;
  return valid ? "" : "'" + text + "' is no number of seconds above 0";
}

}  // namespace

void addTo(CLI::App& app, LaunchArguments& arguments) {
  app.add_option("--recording", arguments.recording, "Recording to play instead of a modem");
  app.add_option("--speed", arguments.speed, "How many times faster than recorded, or max")
      ->check(speedError);
  app.add_option("--seconds", arguments.seconds, "End after so many seconds")->check(secondsError);
  app.add_flag("--quiet", arguments.quiet, "Leave out the application's log lines");
}

std::optional<int> parse(CLI::App& app, int argc, char** argv) {
  app.failure_message([](const CLI::App* /*app*/, const CLI::Error& error) {
    return std::string("quorin: ") + error.what() + "; --help tells more\n";
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  return std::nullopt;
}

Launch::Launch(LaunchArguments arguments) : _arguments(std::move(arguments)) {
  pthread_sigmask(SIG_BLOCK, &endingSignals(), nullptr);
}

bool Launch::open() {
  if (_arguments.recording.empty()) return bus::install(), true;
  Speed speed;
  (void)readSpeed(_arguments.speed, speed);
  _service.install();
  _player.emplace(_arguments.recording, speed, _service);
  if (_player->recording().error().empty()) return true;
  std::cerr << "quorin: " << _player->recording().error() << '\n';
  return false;
}

void Launch::start(bool endsWithRecording, std::function<void()> end) {
  _end = std::move(end);
  std::thread(awaitSignals, [this](int signal) {
    _signal = signal;
    endOnce();
  }).detach();
  if (_arguments.seconds > 0)
    scheduleTimer(Milliseconds(static_cast<std::int64_t>(_arguments.seconds * 1000)),
                  [this] { endOnce(); });
  if (!_player) return;
  scheduleTimer(kPlayerTick, [this, endsWithRecording] {
    play();
    if (endsWithRecording && _player->isOver()) endOnce();
  });
}

void Launch::endOnce() {
  if (const auto end = std::exchange(_end, nullptr)) end();
}

void Launch::play() {
  if (!_player) return;
  _player->step();
  for (const std::string& line : _player->recording().unreadableLines()) {
    std::cerr << "quorin: " << line << '\n';
    _unreadable = true;
  }
}

}  // namespace quorin
