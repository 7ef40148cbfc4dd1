#pragma once

#include "tests/support/rig.h"

namespace quorin::test {

/// What `metricctl import` made of a log.
struct Import {
  int exitCode;
  std::vector<std::string> events;  // "Class {dictionary}", without the time stamp
  std::vector<std::int64_t> times;
  std::string complaints;  // standard error
};

/// A path in the running test's own folder.
[[nodiscard]] std::string inFolder(const std::string& name);
/// Imports a file of the running test's own folder.
[[nodiscard]] Import importFile(const std::string& name,
                                const std::string& recording = "recording");
/// Writes a file there.
void writeFile(const std::string& name, const std::string& text);
[[nodiscard]] std::string readFile(const std::string& name);

/// Imports a log of this content, named "drive".
[[nodiscard]] Import import(const std::string& text);
[[nodiscard]] std::vector<std::string> events(const std::string& text);

/// The columns that the rows have; a row's time is 1970-01-01 00:00:01.
inline constexpr char kColumns[] =
    "Timestamp\tOperator\tNode\tCellID\tLAC\tNetworkTech\tLevel\tQual\tSNR\tARFCN\tPSC\tBAND\n";
[[nodiscard]] std::string row(const std::string& cells);
[[nodiscard]] std::string log(const std::string& cells);

/// A record of this kind and of the same time.
[[nodiscard]] std::string record(const std::string& kind, const std::string& rest);

}  // namespace quorin::test
