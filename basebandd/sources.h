#pragma once

#include <systemd/sd-event.h>

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
  std::string modem;
};

/// Makes the source that the options name, on this event loop. Null when it cannot be made;
/// `reason` then says why.
[[nodiscard]] std::unique_ptr<MetricSource> makeSource(const SourceOptions& options, sd_event* loop,
                                                       std::string& reason);

}  // namespace quorin
