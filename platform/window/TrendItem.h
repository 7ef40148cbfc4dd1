#pragma once

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

#include "platform/window/PageModel.h"

namespace quorin {

/// Draws a row's trend as a line over time, oldest left. Main thread.
class TrendItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(TrendLine)
  Q_PROPERTY(quorin::PageModel* page READ page WRITE setPage NOTIFY changed)
  Q_PROPERTY(int line READ line WRITE setLine NOTIFY changed)
  /// Anything that changes when the trend has a point more.
  Q_PROPERTY(int revision READ revision WRITE setRevision NOTIFY changed)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
  Q_PROPERTY(double minimum READ minimum NOTIFY changed)
  Q_PROPERTY(double maximum READ maximum NOTIFY changed)
  /// From the oldest to the newest point.
  Q_PROPERTY(double seconds READ seconds NOTIFY changed)

 public:
  explicit TrendItem(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

  [[nodiscard]] PageModel* page() const { return _page; }
  void setPage(PageModel* page);
  [[nodiscard]] int line() const { return _line; }
  void setLine(int line);
  [[nodiscard]] int revision() const { return _revision; }
  void setRevision(int revision);
  [[nodiscard]] QColor color() const { return _color; }
  void setColor(QColor color);
  [[nodiscard]] double minimum() const { return points().empty() ? 0 : trend()->range().first; }
  [[nodiscard]] double maximum() const { return points().empty() ? 0 : trend()->range().second; }
  [[nodiscard]] double seconds() const;

  void paint(QPainter* painter) override;

 signals:
  void changed();

 private:
  [[nodiscard]] const Trend* trend() const;
  [[nodiscard]] const std::vector<Trend::Point>& points() const;
  void repaint();

  QPointer<PageModel> _page;
  int _line = -1;
  int _revision = 0;
  QColor _color;
};

}  // namespace quorin
