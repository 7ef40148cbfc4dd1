#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "messages/catalogue.h"
#include "tools/metricctl/json.h"
#include "tools/metricctl/lines.h"
#include "tools/metricctl/redaction.h"
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
        return std::cout && (options.count == 0 || ++seen < options.count);
      },
      reason);
  return ended ? done : fail(reason);
}

struct Recording {
  std::string path;
  std::size_t count = 0;  // 0: without end
  bool redact = false;
};

int record(const Recording& options) {
  if (!options.redact) umask(S_IRWXG | S_IRWXO);  // identities are nobody else's
  std::ofstream file(options.path, std::ios::binary);
  if (!file) return fail(options.path + ": " + std::strerror(errno));
  std::optional<Redactor> redactor;
  if (options.redact) redactor.emplace();
  (void)std::signal(SIGXFSZ, SIG_IGN);  // a limit on files is told as a full disk is
  std::size_t seen = 0;
  std::uintmax_t written = 0;
  std::string reason;
  bool full = false;
  int exitCode = done;
  const bool ended = watchService(
      {},
      [&](const WatchedEvent& event) {
        RecordingLine line{event.id, hexText(event.payload->bytes()), 0, event.arrival};
        if (redactor) {
          const auto redacted = redactor->redacted(line, reason);
          if (!redacted) {
            std::cerr << "metricctl: event " << event.sequence << ": " << reason << "; left out\n";
            exitCode = unreadableInput;
            return true;
          }
          line = redacted->line;
        }
        // A whole line at a time, so that what is recorded stays readable whatever ends it.
        const std::string text = textOf(line) + '\n';
        full = !(file << text << std::flush);
        if (full) return false;
        written += text.size();
        return options.count == 0 || ++seen < options.count;
      },
      reason);
  if (full) {
    const int error = errno;
    std::error_code ignored;
    file.close();
    std::filesystem::resize_file(options.path, written, ignored);  // a part of a line is none
    return fail(options.path + ": " + std::strerror(error));
  }
  return ended ? exitCode : fail(reason);
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
  auto options = std::make_shared<Recording>();
  arguments.add_option("FILE", options->path, "Where the recording goes")->required();
  arguments.add_option("--count", options->count, "End after so many events");
  arguments.add_flag("--redact", options->redact,
                     "Without identities; what stays: metricctl redact --help");
  return [options] { return record(*options); };
}

}  // namespace quorin::metricctl
