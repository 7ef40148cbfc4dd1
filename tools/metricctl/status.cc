#include <fstream>
#include <iomanip>
#include <iostream>
#include <thread>

#include "platform/bus/protocol.h"
#include "platform/bus/values.h"
#include "platform/recording/recording.h"
#include "tools/metricctl/json.h"
#include "tools/metricctl/lines.h"
#include "tools/metricctl/service.h"

namespace quorin::metricctl {

namespace {

int fail(const std::string& reason) {
  std::cerr << "metricctl: " << reason << '\n';
  return wrongUse;
}

// Of a source that knows: ", live" or ", stale for 12 s".
std::string standingOf(const Json& metric) {
  if (!metric.contains("standing")) return "";
  const auto standing = ", " + metric["standing"].get<std::string>();
  if (!metric.contains("stale_ms")) return standing;
  return standing + " for " + std::to_string(metric["stale_ms"].get<std::int64_t>() / 1000) + " s";
}

void printStatus(const Json& status) {
  std::cout << "source    " << status["source"].get<std::string>()
            << (status["paused"].get<bool>() ? " (paused)" : "") << '\n';
  for (const Json& session : status["sessions"])
    std::cout << "session   " << session["name"].get<std::string>() << "  " << session["metrics"]
              << " metrics" << (session["events_on"].get<bool>() ? "" : ", events off") << ", sent "
              << session["sent"] << ", dropped " << session["dropped"] << ", waiting "
              << session["waiting"] << '\n';
  for (const Json& metric : status["metrics"])
    std::cout << "metric    " << std::left << std::setw(40)
              << (metric["class"].is_string() ? metric["class"].get<std::string>()
                                              : metric["id"].dump())
              << std::right << std::setw(8) << metric["count"] << "  "
              << metric["age_ms"].get<std::int64_t>() / 1000 << " s ago" << standingOf(metric)
              << '\n';
  for (const Json& name : status.value("not_offered", Json::array()))
    std::cout << "metric    " << std::left << std::setw(40) << name.get<std::string>() << std::right
              << "not offered by this modem\n";
}

int status(bool json) {
  std::string reason;
  const bus::Connection bus = bus::openBus(reason);
  if (!bus) return fail(reason);
  const bus::Message reply = callService(bus.get(), bus::kStatus, {}, reason);
  const char* text = nullptr;
  if (!reply || sd_bus_message_read(reply.get(), "s", &text) < 0) return fail(reason);
  if (json)
    std::cout << text << '\n';
  else
    printStatus(Json::parse(text));
  return done;
}

/// Calls a method that answers nothing.
int tell(const char* method, const Arguments& arguments = {}) {
  std::string reason;
  const bus::Connection bus = bus::openBus(reason);
  return bus && callService(bus.get(), method, arguments, reason) ? done : fail(reason);
}

int replay(const std::string& path, double speed) {
  std::ifstream file(path);
  if (!file) return fail(path + ": " + std::strerror(errno));
  std::string reason;
  const bus::Connection bus = bus::openBus(reason);
  if (!bus) return fail(reason);
  Lines lines(path, file);
  std::optional<Milliseconds> first;
  const Milliseconds start = currentClock().uptime();
  for (std::string line; lines.next(line);) {
    if (isBlank(line)) continue;
    const auto recorded = readRecordingLine(line, reason);
    if (!recorded) {
      lines.unreadable(reason);
      continue;
    }
    if (!first) first = recorded->arrival;
    if (recorded->arrival && first && speed > 0) {
      const auto due = static_cast<double>((*recorded->arrival - *first).count()) / speed;
      const auto wait =
          start + Milliseconds(static_cast<std::int64_t>(due)) - currentClock().uptime();
      if (wait > Milliseconds{0}) std::this_thread::sleep_for(wait);
    }
    const auto event = [&](sd_bus_message* call) {
      return bus::appendDictionary(call, recorded->event.get());
    };
    if (!callService(bus.get(), bus::kFeed, event, reason)) return fail(reason);
  }
  return lines.exitCode();
}

}  // namespace

Action statusCommand(CLI::App& arguments) {
  auto json = std::make_shared<bool>(false);
  arguments.add_flag("--json", *json, "As JSON");
  return [json] { return status(*json); };
}

Action pauseCommand(CLI::App& /*arguments*/) {
  return [] { return tell(bus::kPause); };
}

Action resumeCommand(CLI::App& /*arguments*/) {
  return [] { return tell(bus::kResume); };
}

Action stepCommand(CLI::App& arguments) {
  auto count = std::make_shared<std::uint32_t>(1);
  arguments.add_option("COUNT", *count, "How many metrics")->capture_default_str();
  return [count] {
    return tell(bus::kStep,
                [count](sd_bus_message* call) { return sd_bus_message_append(call, "u", *count); });
  };
}

Action replayCommand(CLI::App& arguments) {
  auto path = std::make_shared<std::string>();
  auto speed = std::make_shared<double>(1);
  arguments.add_option("FILE", *path, "Recording to hand to the running service")->required();
  arguments.add_option("--speed", *speed, "How many times faster than recorded; 0: at once")
      ->check(CLI::NonNegativeNumber);
  return [path, speed] { return replay(*path, *speed); };
}

}  // namespace quorin::metricctl
