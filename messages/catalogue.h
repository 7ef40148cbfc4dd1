#pragma once

#include <span>

#include "messages/codec/AnyMessage.h"

namespace quorin {

/// One message class. Nested classes have no metric ID.
struct CatalogueRow {
  const MessageTable* table;
  std::int64_t metricID = 0;
};

/// All message classes: metrics, each followed by what is nested in it.
[[nodiscard]] std::span<const CatalogueRow> catalogue();

/// The class of this name or metric ID, or null.
[[nodiscard]] const CatalogueRow* catalogueRow(std::string_view className);
[[nodiscard]] const CatalogueRow* catalogueRow(std::int64_t metricID);

}  // namespace quorin
