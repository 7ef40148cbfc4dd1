#include "tests/basebandd/drive_log.h"

#include <cstdlib>
#include <fstream>

namespace quorin::test {

namespace {

std::vector<LoggedMetric> drivenHour(std::uint64_t seed) {
  SimulatorSource source(seed, Milliseconds(kDriveStart), Milliseconds(kUptimeStart));
  std::vector<LoggedMetric> log;
  while (source.next() && source.next()->count() <= kUptimeStart + kHour) {
    const std::int64_t t = source.next()->count() - kUptimeStart;
    source.advanceTo(*source.next(), [&](std::int64_t id, const Ref<Data>& payload) {
      log.push_back({t, id, payload});
    });
  }
  return log;
}

void dump(const std::vector<LoggedMetric>& log, const char* path) {
  std::ofstream file(path);
  for (const LoggedMetric& metric : log)
    file << R"({"kKeyMetricID":)" << metric.id << R"(,"kKeyPayload":")"
         << hexText(metric.payload->bytes()) << R"(","kKeyProfileID":0,"t":)"
         << kDriveStart + metric.t << "}\n";
}

}  // namespace

const std::vector<LoggedMetric>& hourOfDrive(std::uint64_t seed) {
  static std::map<std::uint64_t, std::vector<LoggedMetric>> hours;
  const auto [found, isNew] = hours.try_emplace(seed);
  if (!isNew) return found->second;
  found->second = drivenHour(seed);
  const char* path = std::getenv("QUORIN_DUMP");
  if (path && seed == 1) dump(found->second, path);
  return found->second;
}

void walk(const std::vector<LoggedMetric>& drive,
          const std::function<void(const LoggedMetric&, const Picture&)>& each) {
  Picture picture;
  for (const LoggedMetric& metric : drive) {
    each(metric, picture);
    picture.take(metric);
  }
}

void walkMoments(const std::vector<LoggedMetric>& drive,
                 const std::function<void(std::int64_t, const Picture&)>& each) {
  Picture picture;
  for (std::size_t i = 0; i < drive.size(); ++i) {
    picture.take(drive[i]);
    if (i + 1 == drive.size() || drive[i + 1].t != drive[i].t) each(drive[i].t, picture);
  }
}

bool isOnLte(const Picture& picture) {
  return picture.has(K_LTE_SCELL_INFO) &&
         picture.lteState() != valueOf(names::KLTE_RRC_STATE, "KLTE_RRC_STATE_NULL");
}

}  // namespace quorin::test
