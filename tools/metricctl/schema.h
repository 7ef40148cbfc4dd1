#pragma once

#include <iosfwd>

namespace quorin::metricctl {

/// The catalogue as a reference page in Markdown.
void printPage(std::ostream& out);
/// What stands beside the rows of the pages, and how their values read, in Markdown.
void printAnnotations(std::ostream& out);
/// Which fields hold identities and what redacting puts in their place, and which tell places.
void printIdentities(std::ostream& out);
/// The catalogue as a standard .proto file.
void printProto(std::ostream& out);

}  // namespace quorin::metricctl
