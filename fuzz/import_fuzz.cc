#include <sstream>

#include "fuzz/support/promise.h"
#include "messages/catalogue.h"
#include "platform/recording/recording.h"
#include "tools/metricctl/import_logs.h"

namespace {

using namespace quorin;
using namespace quorin::metricctl;
using fuzz::promise;

constexpr LogFormat kFormats[] = {
    {isGnettrackHeader, importGnettrack},
    {isMobileInsightRecord, importMobileInsight},
};

/// Only these may need all 32 bits; elsewhere they would be a negative number gone astray.
constexpr std::string_view kWholeWords[] = {"m_tmsi"};

void checkNumbers(const Dictionary& fields) {
  for (const auto& [key, value] : fields) {
    if (value.kind() == Value::Kind::uint32 && std::ranges::count(kWholeWords, key.text) == 0)
      promise(*value.integer() < 0x80000000, "an unsigned field holds no negative number", fields);
    if (value.kind() == Value::Kind::dictionary) checkNumbers(value.dictionary());
    if (value.kind() == Value::Kind::list)
      for (const Value& element : value.list())
        if (element.kind() == Value::Kind::dictionary) checkNumbers(element.dictionary());
  }
}

/// One event as the recording has it.
std::string checkedEvent(const ImportedMetric& metric, Milliseconds time) {
  const CatalogueRow* row = catalogueRow(metric.id);
  promise(row && row->table == &metric.message->table(), "a metric is of its ID's class");
  PBDataWriter writer;
  metric.message->writeTo(writer);
  const auto again = row->table->make();
  promise(again->initWithData(make<Data>(writer.bytes())) && again->isEqual(*metric.message),
          "what is imported can be read");
  const Dictionary fields = again->dictionaryRepresentation();
  const Value* stamp = fields.find("timestamp");
  promise(stamp && stamp->natural() == static_cast<std::uint64_t>(time.count()),
          "an event has its record's time", fields);
  promise(fields.size() > 1, "an event says more than its time", fields);
  checkNumbers(fields);
  return std::to_string(metric.id) + " " + std::to_string(time.count()) + " " +
         hexText(writer.bytes()) + "\n";
}

struct Imported {
  std::string events;
  bool isWhole = false;
};

Imported import(const LogFormat& format, const std::string& text) {
  std::istringstream stream(text);
  Lines lines("log", stream);
  Imported imported;
  format.import(stream, lines, [&](Milliseconds time, const std::vector<ImportedMetric>& metrics) {
    for (const ImportedMetric& metric : metrics) imported.events += checkedEvent(metric, time);
  });
  imported.isWhole = lines.exitCode() == done;
  return imported;
}

std::string firstLineOf(const std::string& text) {
  std::istringstream stream(text);
  Lines lines("log", stream);
  std::string line;
  while (lines.next(line) && isBlank(line)) {
  }
  return line;
}

}  // namespace

// A drive log.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const bool isQuiet = (std::cerr.setstate(std::ios::failbit), true);
  (void)isQuiet;
  const std::string text(bytes, bytes + size);
  const std::string first = firstLineOf(text);
  for (const LogFormat& format : kFormats) {
    if (!format.recognises(first)) continue;
    const Imported once = import(format, text);
    promise(import(format, text).events == once.events, "a log is read twice alike");
    promise(import(format, text + "\n\n").events == once.events, "blank lines say nothing");
    if (format.import != importMobileInsight) continue;
    // Each record stands alone.
    std::string events;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) events += import(format, line).events;
    promise(events == once.events, "a record means the same wherever it stands", once.events);
  }
  return 0;
}
