#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>

#include "platform/screen/ScreenPage.h"

namespace quorin {

/// A shown page as Qt Quick's lists read it: one line a row, headers among them. Main thread.
class PageModel final : public QAbstractListModel, private ScreenPageObserver {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(bool isMenu READ isMenu CONSTANT)
  Q_PROPERTY(QString age READ age NOTIFY ageChanged)
  Q_PROPERTY(int reloads READ reloads NOTIFY reloaded)
  /// How often trends had a point more.
  Q_PROPERTY(int samples READ samples NOTIFY sampled)

 public:
  enum Role {
    mainText = Qt::UserRole,
    detailText,
    isHeader,
    accessibleRole,
    unit,
    meaning,
    clause,
    isOpen,
    changes,
    trendSize,
  };

  /// Requires: the page outlives the model.
  explicit PageModel(ScreenPage& page);
  ~PageModel() override;

  [[nodiscard]] ScreenPage& page() const { return _page; }
  [[nodiscard]] QString title() const;
  /// Its rows are only the way to other pages.
  [[nodiscard]] bool isMenu() const;
  [[nodiscard]] QString age() const { return QString::fromStdString(_page.age()); }
  [[nodiscard]] int reloads() const { return _reloads; }
  [[nodiscard]] int samples() const { return _samples; }

  /// The header of the section that the line is in, or -1.
  Q_INVOKABLE [[nodiscard]] int headerOf(int line) const;
  /// The next line in this direction, 1 or -1, that is no header; the line itself when there is none.
  Q_INVOKABLE [[nodiscard]] int rowFrom(int line, int direction) const;
  /// The first line at or after `from`, round the end, with this text; -1: none.
  Q_INVOKABLE [[nodiscard]] int find(const QString& text, int from) const;
  /// One role of one line, such as "mainText".
  Q_INVOKABLE [[nodiscard]] QVariant at(int line, const QString& role) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 signals:
  void ageChanged();
  void reloaded();
  void sampled();

 private:
  void willRemove(std::size_t first, std::size_t count) override;
  void didRemove(std::size_t first, std::size_t count) override;
  void willInsert(std::size_t first, std::size_t count) override;
  void didInsert(std::size_t first, std::size_t count) override;
  void didChange(std::size_t line) override;
  void didMark(std::size_t line) override;
  void didExtendTrends() override;
  void didReload() override;

  ScreenPage& _page;
  int _reloads = 0;
  int _samples = 0;
};

}  // namespace quorin
