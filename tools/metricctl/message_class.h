#pragma once

#include "messages/catalogue.h"
#include "tools/metricctl/commands.h"

namespace quorin::metricctl {

/// The arguments `--class NAME | --id ID` and the class that they choose.
struct MessageClass {
  void addTo(CLI::App& arguments);
  /// Prints why there is no such class and gives null.
  [[nodiscard]] const MessageTable* table() const;

  std::string name;
  std::int64_t id = 0;
};

}  // namespace quorin::metricctl
