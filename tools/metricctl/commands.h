#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace quorin::metricctl {

/// Exit codes of every command.
enum Exit : int { done = 0, unreadableInput = 1, wrongUse = 2 };

/// What a command does once its arguments are read; gives the exit code.
using Action = std::function<int()>;

// Each adds its command's arguments and gives its action.
[[nodiscard]] Action decodeCommand(CLI::App& arguments);
[[nodiscard]] Action encodeCommand(CLI::App& arguments);
[[nodiscard]] Action schemaCommand(CLI::App& arguments);
[[nodiscard]] Action importCommand(CLI::App& arguments);
[[nodiscard]] Action intakeCommand(CLI::App& arguments);
[[nodiscard]] Action watchCommand(CLI::App& arguments);
[[nodiscard]] Action recordCommand(CLI::App& arguments);
[[nodiscard]] Action redactCommand(CLI::App& arguments);
[[nodiscard]] Action checkRedactedCommand(CLI::App& arguments);
[[nodiscard]] Action replayCommand(CLI::App& arguments);
[[nodiscard]] Action statusCommand(CLI::App& arguments);
[[nodiscard]] Action pauseCommand(CLI::App& arguments);
[[nodiscard]] Action resumeCommand(CLI::App& arguments);
[[nodiscard]] Action stepCommand(CLI::App& arguments);

/// Runs the command that the arguments name.
[[nodiscard]] int run(int argc, char** argv);

}  // namespace quorin::metricctl
