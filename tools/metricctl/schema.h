#pragma once

#include <iosfwd>

namespace quorin::metricctl {

/// The catalogue as a reference page in Markdown.
void printPage(std::ostream& out);
/// The catalogue as a standard .proto file.
void printProto(std::ostream& out);

}  // namespace quorin::metricctl
