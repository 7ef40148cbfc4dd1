#pragma once

#include <optional>
#include <string>

#include "platform/baseband/Loopback.h"
#include "platform/recording/RecordingPlayer.h"

namespace CLI {
class App;
}

namespace quorin {

/// What the command line of every viewer says.
struct LaunchArguments {
  std::string recording;  // empty: the service on the bus
  std::string speed = "1";
  double seconds = 0;  // 0: until it is closed
  bool quiet = false;
};

/// Adds the options to a viewer's command line, with their checks.
void addTo(CLI::App& app, LaunchArguments& arguments);

/// Parses a viewer's command line. Gives the exit code where the program ends with that: 0 after
/// --help, 2 after one clear line.
[[nodiscard]] std::optional<int> parse(CLI::App& app, int argc, char** argv);

/// Where a viewer's events come from: the service, or a recording that is played. Also ends the
/// viewer when its time is up or SIGINT, SIGTERM or SIGHUP asks for it. Main thread; lives as long
/// as the program.
class Launch {
 public:
  /// Requires: no other thread runs yet, since those started later inherit what signals they see.
  explicit Launch(LaunchArguments arguments);

  /// Makes the way to the events. False when there is none: one line on standard error says why.
  [[nodiscard]] bool open();
  /// From now on plays what is due, and calls `end` once: when the time is up, a signal came, or,
  /// with `endsWithRecording`, everything was played.
  void start(bool endsWithRecording, std::function<void()> end);

  /// The signal that ended it, or 0.
  [[nodiscard]] int signal() const { return _signal; }
  /// A line of the recording could not be read.
  [[nodiscard]] bool unreadable() const { return _unreadable; }

 private:
  void play();
  void endOnce();

  LaunchArguments _arguments;
  Loopback _service;
  std::optional<RecordingPlayer> _player;
  std::function<void()> _end;
  int _signal = 0;
  bool _unreadable = false;
};

}  // namespace quorin
