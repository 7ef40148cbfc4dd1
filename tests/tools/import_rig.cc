#include "tests/tools/import_rig.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "messages/catalogue.h"
#include "tools/metricctl/commands.h"
#include "tools/metricctl/json.h"

namespace quorin::test {

namespace {

using metricctl::Json;

std::string eventText(const Json& line, std::vector<std::int64_t>& times) {
  const CatalogueRow* row = catalogueRow(line["kKeyMetricID"].get<std::int64_t>());
  const auto message = row->table->make();
  const auto payload = bytes(line["kKeyPayload"].get<std::string>());
  PBDataReader reader(payload);
  if (!message->readFrom(reader)) return "not decodable";
  Json dictionary = metricctl::jsonOf(message->dictionaryRepresentation());
  times.push_back(line["t"].get<std::int64_t>());
  if (dictionary["timestamp"] != line["t"]) return "time stamp and arrival differ";
  dictionary.erase("timestamp");
  return std::string(row->table->name) + " " + dictionary.dump();
}

}  // namespace

std::string inFolder(const std::string& name) {
  const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
  const auto folder =
      std::filesystem::path(::testing::TempDir()) / test->test_suite_name() / test->name();
  std::filesystem::create_directories(folder);
  return folder / name;
}

Import importFile(const std::string& name, const std::string& recording) {
  std::vector<std::string> words = {"metricctl", "import", inFolder(name), "-o",
                                    inFolder(recording)};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  ::testing::internal::CaptureStderr();
  Import result{metricctl::run(static_cast<int>(arguments.size()), arguments.data()), {}, {}, {}};
  result.complaints = ::testing::internal::GetCapturedStderr();
  if (recording == name) return result;
  std::istringstream lines(readFile(recording));
  for (std::string line; std::getline(lines, line);)
    result.events.push_back(eventText(Json::parse(line), result.times));
  return result;
}

void writeFile(const std::string& name, const std::string& text) {
  std::ofstream(inFolder(name), std::ios::binary) << text;
}

std::string readFile(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(inFolder(name), std::ios::binary).rdbuf();
  return text.str();
}

Import import(const std::string& text) {
  writeFile("drive", text);
  return importFile("drive");
}

std::vector<std::string> events(const std::string& text) { return import(text).events; }

std::string row(const std::string& cells) { return "1970.01.01_00.00.01\t" + cells + "\n"; }

std::string log(const std::string& cells) { return kColumns + row(cells); }

std::string record(const std::string& kind, const std::string& rest) {
  return "{\"type_id\":\"" + kind + "\",\"timestamp\":\"1970-01-01 00:00:01\"," + rest + "}\n";
}

}  // namespace quorin::test
