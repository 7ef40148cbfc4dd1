#include "metrics/MetricValidator.h"

#include <algorithm>
#include <typeinfo>

#include "metrics/conversions.h"
#include "metrics/metric_cases.h"
#include "metrics/record_rows.h"

namespace quorin {

const std::shared_ptr<MetricValidator>& MetricValidator::sharedInstance() {
  static auto& shared = *new std::shared_ptr<MetricValidator>;  // lives until the process ends
  if (!shared) {
    shared = std::make_shared<MetricValidator>();
    shared->init();
  }
  return shared;
}

MetricValidator::MetricValidator()
    : _mySharedOsminInstance(OsminWrapper::sharedInstance()), _dlbwlookup(bandwidthTable()) {}

// Events that arrive between the two are logged by the wrapper and dropped: meant.
void MetricValidator::init() {
  _mySharedOsminInstance->listen();
  _mySharedOsminInstance->setDelegate(weak_from_this());
}

void MetricValidator::metricsDidUpdate(const EventRecord* metric) {
  if (!metric) fatal();
  const bool isValid = handleRecord(*metric);
  if (!isPrintingOn()) return;
  if (isValid) printLine("Received Valid Metric");
  flushPrintedLines();
}

void MetricValidator::eventsDidUpdate(const EventRecord* /*trigger*/) {
  printLine("I dont care for events");
}

bool MetricValidator::isMetricIDValidWithMetricdict(const Dictionary& metric) {
  return handleMetric(metric);
}

void MetricValidator::keep(const MetricCase& row, Dictionary&& store) {
  if (row.stamp == StampText::beforeLog) convertTimeStamp(store);
  if (row.convert) row.convert(store);
  if (isPrintingOn()) printLine(printedBehind(row.logText, store));
  if (row.stamp == StampText::afterLog) convertTimeStamp(store);
  (this->*row.set)(std::move(store));
  _arrivals[row.index] = currentClock().roughUptime();
  refreshRecords(*this, row);
}

// The dictionary of an event is made only for a handler that might look at it.
bool MetricValidator::handleRecord(const EventRecord& event) {
  if (typeid(*this) == typeid(MetricValidator)) [[likely]]
    if (const auto metric = event.metric()) return handle(metric->id, metric->payload);
  return handleMetric(event.dictionary());
}

bool MetricValidator::handleMetric(const Dictionary& metric) {
  const Value* entry = metric.find(_metricIDKey);
  const auto id = entry ? entry->integer() : std::nullopt;
  if (!id) fatal();
  const Value* payload = metric.find(_payloadKey, 1);
  const bool bytes = payload && payload->kind() == Value::Kind::data;
  return handle(*id, bytes ? payload->bytes() : kNoBytes);
}

bool MetricValidator::handle(std::int64_t id, Bytes payload) {
  _metricID = id;
  const MetricCase* row = metricCase(id);
  if (isPrintingOn()) printLine(row ? row->idLine.text() : IDLine(id).text());
  if (!row) {
    printLine("I dont care for this Metric");
    return false;
  }
  Dictionary store;
  if (!row->message->decode(payload, store)) fatal();
  keep(*row, std::move(store));
  return true;
}

std::optional<Milliseconds> MetricValidator::arrival(Store store) const {
  const auto cases = metricCases();
  const auto row = std::ranges::find(cases, store, &MetricCase::get);
  if (row == cases.end()) return std::nullopt;
  return _arrivals[row->index];
}

}  // namespace quorin
