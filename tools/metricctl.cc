#include "tools/metricctl/commands.h"

int main(int argc, char** argv) { return quorin::metricctl::run(argc, argv); }
