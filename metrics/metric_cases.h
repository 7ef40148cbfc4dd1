#pragma once

#include <array>
#include <span>

#include "metrics/MetricValidator.h"

namespace quorin {

/// One category store.
struct StoreRow {
  std::string_view name;
  MetricValidator::Store get;
  void (MetricValidator::*set)(Dictionary&&);
};

/// All 31 stores.
[[nodiscard]] std::span<const StoreRow> storeRows();

/// When a store's "timestamp" becomes text.
enum class StampText { beforeLog, afterLog, never };

/// One handled metric.
struct MetricCase {
  std::int64_t id;
  /// Gives the dictionary of the payload, a `Data`'s bytes, or of none. False: the class refuses it.
  bool (*decode)(const Value* payload, Dictionary& store);
  MetricValidator::Store get;
  void (MetricValidator::*set)(Dictionary&&);
  std::string_view logText;
  StampText stamp = StampText::beforeLog;
  void (*convert)(Dictionary&) = nullptr;  // the case's own step, before the log line
  std::uint8_t index = 0;                  // among the cases
};

/// The 30 handled metrics, ascending by ID.
extern const std::array<MetricCase, 30> kMetricCases;
[[nodiscard]] inline std::span<const MetricCase> metricCases() { return kMetricCases; }

/// The case of this ID, or null: the metric is not handled.
[[nodiscard]] const MetricCase* metricCase(std::int64_t id);

}  // namespace quorin
