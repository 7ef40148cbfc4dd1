#pragma once

#include <span>

#include "platform/platform.h"
#include "viewer/readings.h"

namespace quorin {

/// What stands beside one row of a page. With a reading, only beside the values that it knows.
struct AnnotationRow {
  std::string_view page;  // a page's key; "* NAS MM": of every technology that has the category
  std::string_view key;
  std::string_view unit;
  std::string_view clause{};  // what the unit measures; a reading has its own
  const Reading* reading = nullptr;
};

/// All annotations, in the order of the page tree.
[[nodiscard]] std::span<const AnnotationRow> annotationRows();

/// Whether the row stands for this page, too.
[[nodiscard]] bool covers(const AnnotationRow& row, std::string_view pageKey);

/// What stands beside this row of this page. Empty: nothing, as beside a placeholder.
[[nodiscard]] Annotation annotationFor(std::string_view pageKey, std::string_view rowKey,
                                       std::string_view detailText);

}  // namespace quorin
