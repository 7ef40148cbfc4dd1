#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/platform.h"

namespace quorin {

/// Which metrics a session wants, by metric ID: at most once a period, or, without one, on change.
using DeviceConfig = std::map<std::int64_t, std::optional<Milliseconds>>;

/// Reads a metric configuration: TOML, one table `[metrics]` whose keys are metric names such as
/// K_LTE_RRC_STATE and whose values are "on change" or a period in milliseconds (100 to 3,600,000).
/// At most 65,536 bytes. Empty for anything else; `reason` then names the line.
[[nodiscard]] std::optional<DeviceConfig> readDeviceConfig(Bytes text, std::string& reason);

}  // namespace quorin
