#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "platform/recording/recording.h"
#include "tools/metricctl/import_logs.h"
#include "tools/metricctl/recording_line.h"

namespace quorin::metricctl {

namespace {

constexpr LogFormat kFormats[] = {
    {isGnettrackHeader, importGnettrack},
    {isMobileInsightRecord, importMobileInsight},
};

int wrong(const std::string& what) {
  std::cerr << "metricctl: " << what << '\n';
  return wrongUse;
}

/// The whole of a stream that cannot go back, such as standard input or a pipe.
std::unique_ptr<std::istream> kept(std::istream& stream) {
  auto all = std::make_unique<std::stringstream>();
  *all << stream.rdbuf();
  return all;
}

/// A stream that can go back to its beginning, or null.
std::unique_ptr<std::istream> opened(const std::string& path) {
  if (path == "-") return kept(std::cin);
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return nullptr;
  auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
  if (!*file) return nullptr;
  if (std::filesystem::is_regular_file(path, error)) return file;
  return kept(*file);
}

/// The format that the first line with something in it speaks of, or null.
const LogFormat* formatOf(std::istream& stream) {
  Lines lines("", stream);
  std::string line;
  while (lines.next(line) && isBlank(line)) {
  }
  for (const LogFormat& format : kFormats)
    if (format.recognises(line)) return &format;
  return nullptr;
}

std::string recordingLine(const ImportedMetric& metric, Milliseconds time) {
  PBDataWriter writer;
  metric.message->writeTo(writer);
  return textOf({.id = metric.id, .payload = hexText(writer.bytes()), .arrival = time}) + '\n';
}

int importLog(const std::string& path, const std::string& outPath) {
  const std::string name = path == "-" ? "standard input" : path;
  const auto stream = opened(path);
  if (!stream) return wrong("cannot read " + name);
  const LogFormat* format = formatOf(*stream);
  if (!format) return wrong(name + " is neither a G-NetTrack Pro nor a MobileInsight log");
  std::error_code error;
  if (!outPath.empty() && std::filesystem::equivalent(path, outPath, error))
    return wrong("the recording would replace the log " + path);
  std::ofstream file;
  if (!outPath.empty()) file.open(outPath, std::ios::binary);
  std::ostream& out = outPath.empty() ? std::cout : file;
  if (!out) return wrong("cannot write " + outPath);
  Lines lines(name, *stream);
  const auto write = [&out](Milliseconds time, const std::vector<ImportedMetric>& metrics) {
    for (const ImportedMetric& metric : metrics) out << recordingLine(metric, time);
  };
  format->import(*stream, lines, write);
  out.flush();
  return out ? lines.exitCode() : wrong("cannot write the whole recording");
}

}  // namespace

Action importCommand(CLI::App& arguments) {
  struct Options {
    std::string path;
    std::string outPath;
  };
  auto options = std::make_shared<Options>();
  arguments
      .add_option("FILE", options->path,
                  "G-NetTrack Pro log or MobileInsight JSON lines; \"-\" is standard input")
      ->required();
  arguments.add_option("-o,--output", options->outPath,
                       "Where the recording goes; standard output without it");
  arguments.footer(
      "Times without a zone are taken as UTC. G-NetTrack Pro writes local time: its\n"
      "recordings are off by the zone's difference. What the log lacks stays absent.");
  return [options] { return importLog(options->path, options->outPath); };
}

}  // namespace quorin::metricctl
