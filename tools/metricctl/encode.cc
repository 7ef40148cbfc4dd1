#include "tools/metricctl/commands.h"
namespace quorin::metricctl {
Action encodeCommand(CLI::App& /*arguments*/) { return [] { return int{wrongUse}; }; }
}
