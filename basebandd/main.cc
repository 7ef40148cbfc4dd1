#include <CLI/CLI.hpp>
#include <csignal>
#include <cstring>
#include <iostream>

#include "basebandd/BusServer.h"
#include "basebandd/sources.h"

namespace {

using namespace quorin;

enum Exit : int { done = 0, failed = 1, wrongUse = 2 };

int fail(int exit, const std::string& reason) {
  std::cerr << "basebandd: " << reason << '\n';
  return exit;
}

/// SIGTERM and SIGINT end the loop in order.
void endOnSignals(sd_event* loop) {
  sigset_t signals;
  sigemptyset(&signals);
  for (int signal : {SIGTERM, SIGINT}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  for (int signal : {SIGTERM, SIGINT})
    (void)sd_event_add_signal(loop, nullptr, signal, nullptr, nullptr);
}

int serve(const SourceOptions& options) {
  std::string reason;
  sd_event* made = nullptr;
  if (const int result = sd_event_default(&made); result < 0)
    return fail(failed, std::strerror(-result));
  const bus::EventLoop loop(made);
  auto source = makeSource(options, loop.get(), reason);
  if (!source) return fail(wrongUse, reason);
  endOnSignals(loop.get());
  BusServer server(loop.get(), std::move(source));
  if (!server.start(reason)) return fail(failed, reason);
  const int result = sd_event_loop(loop.get());
  if (result < 0) return fail(failed, std::strerror(-result));
  return result == 0 ? done : fail(failed, "the bus is gone");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("basebandd: the baseband-manager service");
  SourceOptions options;
  std::string speed = "1";
  app.add_option("--source", options.source, "Where metrics come from")->capture_default_str();
  app.add_option("--seed", options.seed, "Seed of the simulated drive")->capture_default_str();
  app.add_option("--recording", options.recording, "Recording to replay");
  app.add_option("--speed", speed, "How many times faster than recorded, or max");
  app.add_option(
      "--modem", options.modem,
      "Live modem: its number, object path, device or model; else the first enabled one");
  app.add_flag("--loop", options.loop, "Start the recording over at its end");
  app.footer(
      "The service takes its name on the system bus, or on the bus that the environment's\n"
      "BASEBAND_BUS_ADDRESS names; it is ready when it has its name.");
  app.failure_message([](const CLI::App* /*app*/, const CLI::Error& error) {
    return std::string("basebandd: ") + error.what() + "; --help tells more\n";
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? done : wrongUse;
  }
  if (!readSpeed(speed, options.speed))
    return fail(wrongUse, "'" + speed + "' is no speed: a number above 0, or max");
  return serve(options);
}
