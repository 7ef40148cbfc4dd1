#pragma once

#include <memory>
#include <optional>
#include <string>

#include "basebandd/MetricSource.h"
#include "platform/recording/PacedRecording.h"

namespace quorin {

/// What the command line says about the source.
struct SourceOptions {
  std::string source = "simulator";
  std::uint64_t seed = 1;
  std::string recording;
  Speed speed = 1.0;
  bool loop = false;
};

/// Makes the source that the options name. Null when it cannot be made; `reason` then says why.
[[nodiscard]] std::unique_ptr<MetricSource> makeSource(const SourceOptions& options,
                                                       std::string& reason);

}  // namespace quorin
