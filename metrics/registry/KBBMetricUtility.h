#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quorin {

/// One metric tag and the name of its message type.
struct MetricTag {
  std::uint16_t tag;
  std::string_view name;
};

/// The metric tags that the program knows. Any thread.
class KBBMetricUtility {
 public:
  /// Whether `tag` is a metric tag. The class is taken and not used: meant. Every yes writes one
  /// line to the system log.
  [[nodiscard]] static bool isValidMetricIdTag(std::uint16_t tag, std::string_view forClass);

  /// All 31, in their own order.
  [[nodiscard]] static std::span<const MetricTag> tags();
};

}  // namespace quorin
