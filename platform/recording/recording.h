#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/baseband/xpc.h"
#include "platform/foundation/clock.h"

namespace quorin {

/// One line of a recording: an event, and when it arrived where the line says so.
struct RecordedEvent {
  XpcRef event;
  std::optional<Milliseconds> arrival;
};

/// Reads a line such as
///   {"kKeyMetricID":3952132,"kKeyPayload":"0a0b","kKeyProfileID":0,"t":1500}
/// whose payload is hexadecimal and may be absent. "t" is the time of arrival in milliseconds and
/// not part of the event. Empty when the line cannot be read at all; `reason` then says why.
[[nodiscard]] std::optional<RecordedEvent> readRecordingLine(std::string_view line,
                                                             std::string& reason);

/// Whether a line has nothing to read.
[[nodiscard]] bool isBlank(std::string_view line);

}  // namespace quorin
