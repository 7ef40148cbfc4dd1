#include "basebandd/sources.h"

#include <algorithm>

#include "basebandd/ReplaySource.h"
#include "basebandd/SimulatorSource.h"
#include "basebandd/modem/ModemManagerSource.h"

namespace quorin {

namespace {

using Made = std::unique_ptr<MetricSource>;

Made replay(const SourceOptions& options, sd_event* /*loop*/, std::string& reason) {
  if (options.recording.empty()) return reason = "a replay needs --recording FILE", nullptr;
  PacedRecording recording(options.recording, options.speed, options.loop, currentClock().uptime());
  reason = recording.error();
  return reason.empty() ? std::make_unique<ReplaySource>(std::move(recording)) : nullptr;
}

Made simulator(const SourceOptions& options, sd_event* /*loop*/, std::string& /*reason*/) {
  return std::make_unique<SimulatorSource>(options.seed, currentClock().sinceEpoch(),
                                           currentClock().uptime());
}

Made liveModem(const SourceOptions& options, sd_event* loop, std::string& /*reason*/) {
  return std::make_unique<ModemManagerSource>(loop, options.modem);
}

struct SourceRow {
  std::string_view name;
  Made (*make)(const SourceOptions& options, sd_event* loop, std::string& reason);
};

constexpr SourceRow kSources[] = {
    {"simulator", simulator},
    {"replay", replay},
    {"modem", liveModem},
};

}  // namespace

Made makeSource(const SourceOptions& options, sd_event* loop, std::string& reason) {
  const auto* row = std::ranges::find(kSources, options.source, &SourceRow::name);
  if (row != std::end(kSources)) return row->make(options, loop, reason);
  reason = "there is no source '" + options.source + "'; there are:";
  for (const SourceRow& known : kSources) reason += " " + std::string(known.name);
  return nullptr;
}

}  // namespace quorin
