#include "tools/metricctl/commands.h"

#include <iostream>

#include "platform/platform.h"

namespace quorin::metricctl {

namespace {

struct Command {
  const char* name;
  const char* help;
  Action (*add)(CLI::App& arguments);
};

constexpr Command kCommands[] = {
    {"decode", "Decode hexadecimal payloads, one a line, into JSON", decodeCommand},
    {"encode", "Encode JSON, as decode writes it, into hexadecimal payloads", encodeCommand},
    {"schema",
     "Print the message catalogue as a reference page or a .proto file, or the annotations",
     schemaCommand},
    {"import", "Turn a drive log into a recording", importCommand},
    {"intake", "Feed a recording through the metric store and dump what it holds", intakeCommand},
    {"watch", "Show the service's events, decoded, as they come", watchCommand},
    {"record", "Record the service's events", recordCommand},
    {"redact", "Take the identities out of a recording", redactCommand},
    {"check-redacted", "Prove that a recording holds no identities", checkRedactedCommand},
    {"replay", "Hand a recording to the running service", replayCommand},
    {"status", "Show the service's sessions and metrics", statusCommand},
    {"pause", "Hold the service's source", pauseCommand},
    {"step", "Let the paused source give so many metrics", stepCommand},
    {"resume", "Let the source go on where it stands", resumeCommand},
};

}  // namespace

int run(int argc, char** argv) {
  setSystemLogSink(standardErrorSink());
  CLI::App app("metricctl: command line for modem metrics");
  app.require_subcommand(1);
  app.failure_message([](const CLI::App* /*app*/, const CLI::Error& error) {
    return std::string("metricctl: ") + error.what() + "; metricctl --help tells more\n";
  });
  app.footer("Exit codes: 0 done, 1 some input line could not be read, 2 wrong use.");
  int exitCode = done;
  for (const Command& command : kCommands) {
    CLI::App* arguments = app.add_subcommand(command.name, command.help);
    arguments->callback([&exitCode, action = command.add(*arguments)] { exitCode = action(); });
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? done : wrongUse;
  }
  if (!std::cout.flush() || std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    std::cerr << "metricctl: standard output cannot be written any further\n";
    return wrongUse;
  }
  return exitCode;
}

}  // namespace quorin::metricctl
