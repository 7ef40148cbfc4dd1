#pragma once

#include <functional>

#include "tools/metricctl/import_rules.h"
#include "tools/metricctl/lines.h"

namespace quorin::metricctl {

/// Takes the metrics of one line, in order.
using Sink = std::function<void(Milliseconds time, const std::vector<ImportedMetric>& metrics)>;

/// A drive log's format.
struct LogFormat {
  /// Whether a log that begins with this line, the first that is not blank, is of this format.
  bool (*recognises)(std::string_view line);
  /// Reads the log from the stream's beginning. Requires: a stream that can go back there.
  void (*import)(std::istream& stream, Lines& lines, const Sink& sink);
};

[[nodiscard]] bool isGnettrackHeader(std::string_view line);
void importGnettrack(std::istream& stream, Lines& lines, const Sink& sink);

[[nodiscard]] bool isMobileInsightRecord(std::string_view line);
void importMobileInsight(std::istream& stream, Lines& lines, const Sink& sink);

/// What each kind of record fills.
[[nodiscard]] std::span<const Source> gnettrackSources();
[[nodiscard]] std::span<const Source> mobileInsightSources();

/// Back to the beginning, ready to read.
inline void rewind(std::istream& stream) {
  stream.clear();
  stream.seekg(0);
}

}  // namespace quorin::metricctl
