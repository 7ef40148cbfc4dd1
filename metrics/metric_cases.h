#pragma once

#include <span>

#include "metrics/MetricValidator.h"

namespace quorin {

/// One category store.
struct StoreRow {
  std::string_view name;
  MetricValidator::Store get;
  void (MetricValidator::*set)(Dictionary);
};

/// All 31 stores.
[[nodiscard]] std::span<const StoreRow> storeRows();

/// When a store's "timestamp" becomes text.
enum class StampText { beforeLog, afterLog, never };

/// One handled metric.
struct MetricCase {
  std::int64_t id;
  /// Gives the payload's dictionary. False: the class refuses the payload.
  bool (*decode)(const Ref<Data>& payload, Dictionary& store);
  MetricValidator::Store get;
  void (MetricValidator::*set)(Dictionary);
  std::string_view logText;
  StampText stamp = StampText::beforeLog;
  void (*convert)(Dictionary&) = nullptr;  // the case's own step, before the log line
};

/// The 30 handled metrics, ascending by ID.
[[nodiscard]] std::span<const MetricCase> metricCases();

/// The case of this ID, or null: the metric is not handled.
[[nodiscard]] const MetricCase* metricCase(std::int64_t id);

}  // namespace quorin
