#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "messages/codec/field_table.h"
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

/// The line that an event's ID begins with: its low 32 bits in at least two columns.
class IDLine {
 public:
  constexpr IDLine() = default;
  constexpr explicit IDLine(std::int64_t id) {
    constexpr std::string_view kBefore = "Metric ID in Hex = ";
    const auto low = static_cast<std::uint32_t>(id);
    const auto digits = (static_cast<std::size_t>(std::bit_width(low)) + 3) / 4;
    _size = kBefore.size() + std::max<std::size_t>(2, digits);
    _text.fill(' ');
    std::ranges::copy(kBefore, _text.begin());
    std::size_t at = _size;
    std::uint32_t rest = low;
    do _text[--at] = "0123456789ABCDEF"[rest & 15];
    while ((rest >>= 4) != 0);
  }
  [[nodiscard]] constexpr std::string_view text() const { return {_text.data(), _size}; }

 private:
  std::array<char, 27> _text{};
  std::size_t _size = 0;
};

/// One handled metric.
struct MetricCase {
  std::int64_t id;
  const MessageTable* message;  // of the payload
  MetricValidator::Store get;
  void (MetricValidator::*set)(Dictionary&&);
  std::string_view logText;
  StampText stamp = StampText::beforeLog;
  void (*convert)(Dictionary&) = nullptr;  // the case's own step, before the log line
  std::uint8_t index = 0;                  // among the cases
  IDLine idLine{};
};

/// The 30 handled metrics, ascending by ID.
extern const std::array<MetricCase, 30> kMetricCases;
[[nodiscard]] inline std::span<const MetricCase> metricCases() { return kMetricCases; }

/// The case of this ID, or null: the metric is not handled.
[[nodiscard]] const MetricCase* metricCase(std::int64_t id);

}  // namespace quorin
