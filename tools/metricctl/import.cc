#include "tools/metricctl/commands.h"
namespace quorin::metricctl {
Action importCommand(CLI::App& /*arguments*/) { return [] { return int{wrongUse}; }; }
}
