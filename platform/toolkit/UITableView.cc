#include "platform/toolkit/UITableView.h"

#include <algorithm>

#include "platform/foundation/fatal.h"

namespace quorin {

UITableViewCell::UITableViewCell(const CellPrototype& prototype)
    : _reuseIdentifier(prototype.reuseIdentifier) {
  if (prototype.style == CellStyle::custom) return;
  _textLabel.emplace();
  if (!prototype.text.empty()) _textLabel->setText(std::string(prototype.text));
  if (prototype.style == CellStyle::detail) _detailTextLabel.emplace();
}

Cell UITableView::dequeueReusableCellWithIdentifier(std::string_view identifier,
                                                    NSIndexPath /*indexPath*/) {
  const auto reusable = std::ranges::find_if(
      _reusable, [&](const Cell& cell) { return cell->reuseIdentifier() == identifier; });
  if (reusable != _reusable.end()) {
    Cell cell = *reusable;
    _reusable.erase(reusable);
    return cell;
  }
  const auto prototype =
      std::ranges::find(_prototypes, identifier, &CellPrototype::reuseIdentifier);
  if (prototype == _prototypes.end()) fatal();
  return std::make_shared<UITableViewCell>(*prototype);
}

}  // namespace quorin
