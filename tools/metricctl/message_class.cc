#include "tools/metricctl/message_class.h"

#include <iostream>

namespace quorin::metricctl {

void MessageClass::addTo(CLI::App& arguments) {
  auto* choice = arguments.add_option_group("class")->require_option(1);
  choice->add_option("--class", name, "Message class, such as KCellularLteRrcState");
  choice->add_option("--id", id, "Metric ID, such as 0x3C4E04 or 3952132");
}

const MessageTable* MessageClass::table() const {
  const CatalogueRow* row = name.empty() ? catalogueRow(id) : catalogueRow(name);
  if (row) return row->table;
  std::cerr << "metricctl: no message class " << (name.empty() ? "has this metric ID" : name)
            << '\n';
  return nullptr;
}

}  // namespace quorin::metricctl
