#include "metrics/registry/KBBMetricUtility.h"

#include "platform/platform.h"

namespace quorin {

bool KBBMetricUtility::isValidMetricIdTag(std::uint16_t tag, std::string_view /*forClass*/) {
  if (!isTag(tag)) return false;
  systemLog("valid metricId tag");
  return true;
}

std::span<const MetricTag> KBBMetricUtility::tags() { return kMetricTags; }

}  // namespace quorin
