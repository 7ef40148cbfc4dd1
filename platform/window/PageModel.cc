#include "platform/window/PageModel.h"

#include <QAccessible>

#include "platform/toolkit/UIStoryboard.h"

namespace quorin {

namespace {

QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

struct RoleRow {
  PageModel::Role role;
  const char* name;
  QVariant (*value)(const ScreenLine& line);
};

constexpr RoleRow kRoles[] = {
    {PageModel::mainText, "mainText", [](const ScreenLine& line) -> QVariant { return text(line.text); }},
    {PageModel::detailText, "detailText",
     [](const ScreenLine& line) -> QVariant { return text(line.detail); }},
    {PageModel::isHeader, "isHeader", [](const ScreenLine& line) -> QVariant { return line.isHeader(); }},
    // The page would look a name of an enumeration up at the start, which takes a millisecond.
    {PageModel::accessibleRole, "accessibleRole",
     [](const ScreenLine& line) -> QVariant {
       return static_cast<int>(line.isHeader() ? QAccessible::Heading : QAccessible::ListItem);
     }},
    {PageModel::unit, "unit",
     [](const ScreenLine& line) -> QVariant { return text(line.annotation.unit); }},
    {PageModel::meaning, "meaning",
     [](const ScreenLine& line) -> QVariant { return text(line.annotation.meaning); }},
    {PageModel::clause, "clause",
     [](const ScreenLine& line) -> QVariant { return text(line.annotation.clause); }},
    {PageModel::isOpen, "isOpen", [](const ScreenLine& line) -> QVariant { return line.open; }},
    {PageModel::changes, "changes", [](const ScreenLine& line) -> QVariant { return line.changes; }},
    {PageModel::trendSize, "trendSize",
     [](const ScreenLine& line) -> QVariant {
       return static_cast<int>(line.trend.points().size());
     }},
};

const RoleRow* roleRow(int role) {
  const int row = role - PageModel::mainText;
  return row >= 0 && row < static_cast<int>(std::size(kRoles)) ? &kRoles[row] : nullptr;
}

}  // namespace

PageModel::PageModel(ScreenPage& page) : _page(page) { _page.setObserver(this); }

PageModel::~PageModel() { _page.setObserver(nullptr); }

QString PageModel::title() const { return text(_page.title()); }

bool PageModel::isMenu() const {
  const NSCoder* scene = _page.controller().scene();
  return scene && !scene->segueTo.empty() && scene->cell.style == CellStyle::basic;
}

int PageModel::headerOf(int line) const {
  while (line >= 0 && line < rowCount() && !_page.lines()[static_cast<std::size_t>(line)].isHeader())
    --line;
  return line < rowCount() ? line : -1;
}

int PageModel::rowFrom(int line, int direction) const {
  for (int next = line + direction; next >= 0 && next < rowCount(); next += direction)
    if (!_page.lines()[static_cast<std::size_t>(next)].isHeader()) return next;
  return line;
}

int PageModel::find(const QString& wanted, int from) const {
  const auto found = _page.find(wanted.toStdString(), static_cast<std::size_t>(std::max(from, 0)));
  return found ? static_cast<int>(*found) : -1;
}

QVariant PageModel::at(int line, const QString& role) const {
  for (const RoleRow& row : kRoles)
    if (role == QLatin1String(row.name)) return data(index(line), row.role);
  return {};
}

int PageModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(_page.lines().size());
}

QVariant PageModel::data(const QModelIndex& index, int role) const {
  const RoleRow* row = roleRow(role);
  if (!row || !index.isValid() || index.row() >= rowCount()) return {};
  return row->value(_page.lines()[static_cast<std::size_t>(index.row())]);
}

QHash<int, QByteArray> PageModel::roleNames() const {
  QHash<int, QByteArray> names;
  for (const RoleRow& row : kRoles) names[row.role] = row.name;
  return names;
}

void PageModel::willRemove(std::size_t first, std::size_t count) {
  beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
}
void PageModel::didRemove(std::size_t /*first*/, std::size_t /*count*/) { endRemoveRows(); }

void PageModel::willInsert(std::size_t first, std::size_t count) {
  beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
}
void PageModel::didInsert(std::size_t /*first*/, std::size_t /*count*/) { endInsertRows(); }

void PageModel::didChange(std::size_t line) {
  const QModelIndex changed = index(static_cast<int>(line));
  emit dataChanged(changed, changed, {detailText, unit, meaning, clause, changes});
}

void PageModel::didMark(std::size_t line) {
  const QModelIndex marked = index(static_cast<int>(line));
  emit dataChanged(marked, marked, {isOpen});
}

void PageModel::didExtendTrends() {
  ++_samples;
  emit sampled();
  if (rowCount() > 0) emit dataChanged(index(0), index(rowCount() - 1), {trendSize});
}

void PageModel::didReload() {
  ++_reloads;
  emit reloaded();
  emit ageChanged();
}

}  // namespace quorin
