#include <iostream>

#include "messages/catalogue.h"
#include "tools/metricctl/json.h"
#include "tools/metricctl/lines.h"
#include "tools/metricctl/service.h"

namespace quorin::metricctl {

namespace {

struct Options {
  bool json = false;
  std::size_t count = 0;  // 0: without end
  std::vector<std::string> metrics;
};

void print(const WatchedEvent& event, bool json) {
  const CatalogueRow* row = catalogueRow(event.id);
  if (!row) return;
  const auto message = row->table->make();
  (void)message->initWithData(event.payload);
  const Dictionary dictionary = message->dictionaryRepresentation();
  if (json)
    std::cout << Json{{"id", event.id},
                      {"class", std::string(row->table->name)},
                      {"seq", event.sequence},
                      {"t", event.arrival.count()},
                      {"dict", jsonOf(dictionary)}}
                     .dump()
              << std::endl;
  else
    std::cout << row->table->name << ' ' << printed(dictionary) << std::endl;
}

int fail(const std::string& reason) {
  std::cerr << "metricctl: " << reason << '\n';
  return wrongUse;
}

int watch(const Options& options) {
  std::size_t seen = 0;
  std::string reason;
  const bool ended = watchService(
      options.metrics,
      [&](const WatchedEvent& event) {
        print(event, options.json);
        return options.count == 0 || ++seen < options.count;
      },
      reason);
  return ended ? done : fail(reason);
}

int record(const std::string& path, std::size_t count) {
  std::ofstream file(path, std::ios::binary);
  if (!file) return fail(path + ": " + std::strerror(errno));
  std::size_t seen = 0;
  std::string reason;
  bool full = false;
  const bool ended = watchService(
      {},
      [&](const WatchedEvent& event) {
        // A whole line at a time, so that what is recorded stays readable whatever ends it.
        file << "{\"kKeyMetricID\":" + std::to_string(event.id) + ",\"kKeyPayload\":\"" +
                    hexText(event.payload->bytes()) +
                    "\",\"kKeyProfileID\":0,\"t\":" + std::to_string(event.arrival.count()) + "}\n"
             << std::flush;
        full = !file;
        return !full && (count == 0 || ++seen < count);
      },
      reason);
  if (full) return fail(path + ": cannot be written any further");
  return ended ? done : fail(reason);
}

}  // namespace

Action watchCommand(CLI::App& arguments) {
  auto options = std::make_shared<Options>();
  arguments.add_flag("--json", options->json, "One JSON object an event: id, class, seq, t, dict");
  arguments.add_option("--count", options->count, "End after so many events");
  arguments.add_option("METRIC", options->metrics,
                       "K_LTE_RRC_STATE or KCellularLteRrcState; all without");
  return [options] { return watch(*options); };
}

Action recordCommand(CLI::App& arguments) {
  auto path = std::make_shared<std::string>();
  auto count = std::make_shared<std::size_t>(0);
  arguments.add_option("FILE", *path, "Where the recording goes")->required();
  arguments.add_option("--count", *count, "End after so many events");
  return [path, count] { return record(*path, *count); };
}

}  // namespace quorin::metricctl
