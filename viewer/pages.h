#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "metrics/record_rows.h"

namespace quorin {

/// A question that a table asks its page.
enum class Question { counts, cells };

/// What a page shows: a store, a record's dictionary, the first entry of a record's list, or one
/// section for each entry of a record's list.
struct FirstEntryOf {
  ListIn list;
};
struct SectionPerEntryOf {
  ListIn list;
};
using Shown = std::variant<MetricValidator::Store, DictionaryIn, FirstEntryOf, SectionPerEntryOf>;

/// One category page.
struct PageRow {
  std::string_view key;  // technology, blank, category
  Shown shown;
  std::string_view header{};       // before the section's index; empty: no header
  std::optional<Question> only{};  // the one question that knows this key; empty: all do
};

/// All pages, in the order in which a cell tests their keys.
[[nodiscard]] std::span<const PageRow> pageRows();

/// The page that answers the question under this key, or null: "Come back later".
[[nodiscard]] const PageRow* pageRow(std::string_view key, Question question);

/// The page's sections as dictionaries, as they are at this moment.
[[nodiscard]] std::vector<Dictionary> sectionsOf(const PageRow& page, MetricValidator& validator);

/// The store whose metric the page shows.
[[nodiscard]] MetricValidator::Store sourceOf(const PageRow& page);

}  // namespace quorin
