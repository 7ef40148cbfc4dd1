#pragma once

#include <optional>

#include "tools/metricctl/identities.h"
#include "tools/metricctl/recording_line.h"

namespace quorin::metricctl {

/// A line of a recording without identities.
struct RedactedLine {
  RecordingLine line;
  std::string_view messageClass;
  std::vector<Replaced> replaced;
};

/// Makes recordings that tell nobody's identities: equal ones stay equal and different ones
/// different, within what one redactor sees. One thread.
class Redactor {
 public:
  /// The line with its payload read, redacted and written anew, so that nothing is left in it but
  /// the fields of its class. Empty, with `reason`: what it holds cannot be known.
  [[nodiscard]] std::optional<RedactedLine> redacted(RecordingLine line, std::string& reason);
  /// The same of a line's text; entries that no recording of ours has are dropped.
  [[nodiscard]] std::optional<RedactedLine> redacted(std::string_view text, std::string& reason);

 private:
  StandIns _standIns;
};

}  // namespace quorin::metricctl
