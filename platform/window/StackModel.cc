#include "platform/window/StackModel.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quorin {

StackModel::StackModel(ScreenStack& stack) : _stack(stack) {
  for (const auto& shown : _stack.pages()) _models.push_back(std::make_unique<PageModel>(*shown));
  _stack.setObserver(this);
}

StackModel::~StackModel() { _stack.setObserver(nullptr); }

bool StackModel::press(int level, int line) {
  return level >= 0 && line >= 0 &&
         _stack.press(static_cast<std::size_t>(level), static_cast<std::size_t>(line));
}

bool StackModel::back() { return _stack.back(); }

void StackModel::copy(int level, int line) const {
  if (level < 0 || level >= rowCount()) return;
  const ScreenPage& shown = *_stack.pages()[static_cast<std::size_t>(level)];
  if (line >= static_cast<int>(shown.lines().size())) return;
  QGuiApplication::clipboard()->setText(QString::fromStdString(
      line < 0 ? copyText(shown) : copyText(shown.lines()[static_cast<std::size_t>(line)])));
}

void StackModel::refreshAges() {
  for (const auto& model : _models) emit model->ageChanged();
}

int StackModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(_models.size());
}

QVariant StackModel::data(const QModelIndex& index, int role) const {
  if (role != page || !index.isValid() || index.row() >= rowCount()) return {};
  return QVariant::fromValue(_models[static_cast<std::size_t>(index.row())].get());
}

QHash<int, QByteArray> StackModel::roleNames() const { return {{page, "page"}}; }

void StackModel::willPush() { beginInsertRows({}, rowCount(), rowCount()); }

void StackModel::didPush() {
  _models.push_back(std::make_unique<PageModel>(_stack.top()));
  endInsertRows();
  emit countChanged();
}

void StackModel::willPop() { beginRemoveRows({}, rowCount() - 1, rowCount() - 1); }

void StackModel::didPop() {
  const std::unique_ptr<PageModel> left = std::move(_models.back());
  _models.pop_back();
  endRemoveRows();
  emit countChanged();
}

}  // namespace quorin
