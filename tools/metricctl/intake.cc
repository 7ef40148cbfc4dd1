#include <iostream>

#include "app/interface.h"
#include "metrics/metric_cases.h"
#include "metrics/record_rows.h"
#include "platform/baseband/Loopback.h"
#include "platform/recording/recording.h"
#include "tools/metricctl/json.h"
#include "tools/metricctl/lines.h"
#include "viewer/SecondLevelViewController.h"
#include "viewer/page_tree.h"

namespace quorin::metricctl {

namespace {

Json storesOf(MetricValidator& validator) {
  Json stores = Json::object();
  for (const StoreRow& row : storeRows())
    stores[std::string(row.name)] = jsonOf((validator.*row.get)());
  return stores;
}

Json recordsOf(MetricValidator& validator) {
  Json records = Json::object();
  for (const RecordRow& row : recordRows())
    records[std::string(row.record)][std::string(row.member)] = jsonOf(valueOf(validator, row));
  return records;
}

Json contentsOfPage(const std::string& technology, const std::string& category) {
  const UIStoryboard& interface = interfaceDescription();
  const auto page = std::static_pointer_cast<SecondLevelViewController>(
      interface.instantiate("SecondLevelViewController"));
  page->setFirstSelection(technology);
  page->setSeguedThroughRow(category);
  Json sections = Json::array();
  for (const SectionContents& section : contentsOf(*page)) {
    Json rows = Json::array();
    for (const auto& row : section.rows) rows.push_back(Json::array({row.text, row.detail}));
    Json contents = Json::object();
    contents["header"] = section.header ? Json(*section.header) : Json(nullptr);
    contents["rows"] = std::move(rows);
    sections.push_back(std::move(contents));
  }
  return sections;
}

/// The pages that the tree composes, and the two that no row of it leads to.
Json pagesOf(MetricValidator& /*validator*/) {
  PageTree tree = buildPageTree();
  tree.categories["LTE"].emplace_back("Component Carrier Info");
  tree.categories["GSM"].emplace_back("GPRS Config");
  Json pages = Json::object();
  for (const std::string& technology : tree.technologies)
    for (const std::string& category : tree.categories[technology])
      pages[technology + " " + category] = contentsOfPage(technology, category);
  return pages;
}

struct Dump {
  std::string_view name;
  Json (*json)(MetricValidator&);
};

constexpr Dump kDumps[] = {{"stores", storesOf}, {"records", recordsOf}, {"pages", pagesOf}};

int takeIn(const std::string& dump, bool quiet) {
  if (quiet) setPrintSink([](std::string_view) {});
  Loopback service;
  service.install();
  MetricValidator& validator = *MetricValidator::sharedInstance();
  Lines lines("standard input", std::cin);
  for (std::string line; lines.next(line);) {
    if (isBlank(line)) continue;
    std::string reason;
    const auto recorded = readRecordingLine(line, reason);
    if (!recorded) {
      lines.unreadable(reason);
      continue;
    }
    const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(recorded->event.get());
    validator.metricsDidUpdate(record);
    record->release();
    flushPrintedLines();
  }
  for (const Dump& row : kDumps)
    if (row.name == dump) std::cout << row.json(validator).dump() << '\n';
  return lines.exitCode();
}

}  // namespace

Action intakeCommand(CLI::App& arguments) {
  struct Options {
    std::string dump;
    bool quiet = false;
  };
  auto options = std::make_shared<Options>();
  arguments
      .add_option("--dump", options->dump,
                  "What to print as JSON at the end: stores, records or pages")
      ->check(CLI::IsMember({"stores", "records", "pages"}));
  arguments.add_flag("--quiet", options->quiet, "Leave out the store's own lines");
  return [options] { return takeIn(options->dump, options->quiet); };
}

}  // namespace quorin::metricctl
