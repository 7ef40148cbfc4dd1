#include "tools/metricctl/commands.h"
namespace quorin::metricctl {
Action schemaCommand(CLI::App& /*arguments*/) { return [] { return int{wrongUse}; }; }
}
