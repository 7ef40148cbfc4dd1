#pragma once

#include <QAbstractListModel>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <string>
#include <vector>

namespace quorin::bench {

/// Two texts a row, as little as a list can be made of.
class BareModel final : public QAbstractListModel {
 public:
  struct Row {
    QString text;
    QString detail;
  };

  explicit BareModel(std::vector<Row> rows) : _rows(std::move(rows)) {}

  /// The change by hand: one row's detail, told to the list.
  void change(int row, const QString& detail);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 private:
  std::vector<Row> _rows;
};

/// A bare window of the toolkit with one list over the model.
class BareWindow {
 public:
  explicit BareWindow(BareModel& model);
  [[nodiscard]] QQuickWindow& window() const;

 private:
  QQmlApplicationEngine _engine;
};

}  // namespace quorin::bench
