#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>
#include <memory>
#include <vector>

#include "platform/screen/ScreenStack.h"
#include "platform/window/PageModel.h"

namespace quorin {

/// The pages on the screen, first page first, and what a touch or a key does to them. Main thread.
class StackModel final : public QAbstractListModel, private ScreenStackObserver {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(int count READ rowCount NOTIFY countChanged)
  Q_PROPERTY(QString path READ path NOTIFY countChanged)

 public:
  enum Role { page = Qt::UserRole };

  /// Requires: the stack outlives the model.
  explicit StackModel(ScreenStack& stack);
  ~StackModel() override;

  [[nodiscard]] QString path() const { return QString::fromStdString(_stack.path()); }

  /// Opens what a line of the page at this level leads to. False when it leads nowhere.
  Q_INVOKABLE bool press(int level, int line);
  /// Leaves the top page, unless it is the only one.
  Q_INVOKABLE bool back();
  /// Puts a row, or the whole page when `line` is negative, on the clipboard.
  Q_INVOKABLE void copy(int level, int line) const;
  /// Says the pages' ages anew.
  Q_INVOKABLE void refreshAges();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  void willPush() override;
  void didPush() override;
  void willPop() override;
  void didPop() override;

  ScreenStack& _stack;
  std::vector<std::unique_ptr<PageModel>> _models;
};

}  // namespace quorin
