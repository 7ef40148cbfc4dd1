#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"

namespace quorin::metricctl {

/// What a line of a recording holds.
struct RecordingLine {
  std::int64_t id;
  std::optional<std::string> payload{};  // hexadecimal
  std::optional<std::int64_t> profile = 0;
  std::optional<Milliseconds> arrival{};
};

/// The line, without its end, in the one spelling that metricctl writes.
[[nodiscard]] inline std::string textOf(const RecordingLine& line) {
  std::string text = "{\"kKeyMetricID\":" + std::to_string(line.id);
  if (line.payload) text += ",\"kKeyPayload\":\"" + *line.payload + '"';
  if (line.profile) text += ",\"kKeyProfileID\":" + std::to_string(*line.profile);
  if (line.arrival) text += ",\"t\":" + std::to_string(line.arrival->count());
  return text + '}';
}

}  // namespace quorin::metricctl
