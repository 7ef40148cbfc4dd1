#include "basebandd/deviceconfig.h"

#include <algorithm>
#include <sstream>

// Not every text that a client may send keeps the parser's assertions, or the assumptions in their
// place; without both it answers with an error.
#undef NDEBUG
#define TOML_ASSERT(expression) static_assert(true)
#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>

#include "basebandd/excerpt.h"
#include "messages/catalogue.h"
#include "metrics/registry/metric_ids.h"

namespace quorin {

namespace {

constexpr std::int64_t kShortestPeriod = 100;
constexpr std::int64_t kLongestPeriod = 3'600'000;
constexpr std::size_t kMostBytes = 65'536;
/// Each dot may nest one deeper, and the parser recurses as deep; it counts brackets by itself.
constexpr std::ptrdiff_t kMostDots = 1'000;

std::string atLine(const toml::source_region& source, const std::string& what) {
  return "line " + std::to_string(source.begin.line) + ": " + what;
}

/// The ID of a metric that has a message class, by the name of its constant.
std::optional<std::int64_t> metricNamed(std::string_view name) {
  const auto* row = std::ranges::find(kMetricIDs, name, &MetricID::name);
  if (row == std::end(kMetricIDs) || !catalogueRow(row->id)) return std::nullopt;
  return row->id;
}

bool readEntry(const toml::key& key, const toml::node& value, DeviceConfig& config,
               std::string& reason) {
  const std::string name(key.str());
  const auto refuse = [&](const std::string& what) {
    reason = atLine(value.source(), excerpt(name) + " " + what);
    return false;
  };
  const auto id = metricNamed(name);
  if (!id) return refuse("is no metric");
  if (value.value<std::string>() == "on change") {
    config[*id] = std::nullopt;
    return true;
  }
  const auto period = value.value_exact<std::int64_t>();
  if (!period) return refuse("is neither \"on change\" nor a period in milliseconds");
  if (*period < kShortestPeriod || *period > kLongestPeriod)
    return refuse("has a period outside 100 to 3600000 milliseconds");
  config[*id] = Milliseconds(*period);
  return true;
}

}  // namespace

std::optional<DeviceConfig> readDeviceConfig(Bytes text, std::string& reason) {
  if (text.size() > kMostBytes) return reason = "line 1: more than 65536 bytes", std::nullopt;
  if (std::ranges::count(text, '.') > kMostDots)
    return reason = "line 1: more than 1000 dots", std::nullopt;
  // The parser does not stand every character beyond ASCII, and only a comment may have one.
  std::string ascii(reinterpret_cast<const char*>(text.data()), text.size());
  std::ranges::replace_if(
      ascii, [](char c) { return (c & 0x80) != 0; }, '?');
  const toml::parse_result parsed = toml::parse(std::string_view(ascii));
  if (!parsed) {
    reason = atLine(parsed.error().source(), oneLine(std::string(parsed.error().description())));
    return std::nullopt;
  }
  DeviceConfig config;
  for (const auto& [key, value] : parsed.table()) {
    const toml::table* metrics = key == "metrics" ? value.as_table() : nullptr;
    if (!metrics) {
      reason = atLine(value.source(), excerpt(key.str()) + " is unknown; only [metrics] is read");
      return std::nullopt;
    }
    for (const auto& [name, wanted] : *metrics)
      if (!readEntry(name, wanted, config, reason)) return std::nullopt;
  }
  if (config.empty()) return reason = "line 1: no metric is asked for", std::nullopt;
  return config;
}

}  // namespace quorin
