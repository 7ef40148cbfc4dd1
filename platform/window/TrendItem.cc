#include "platform/window/TrendItem.h"

#include <QPainter>

namespace quorin {

void TrendItem::setPage(PageModel* page) {
  if (_page == page) return;
  _page = page;
  repaint();
}

void TrendItem::setLine(int line) {
  if (std::exchange(_line, line) != line) repaint();
}

void TrendItem::setRevision(int revision) {
  _revision = revision;
  repaint();
}

void TrendItem::setColor(QColor color) {
  if (std::exchange(_color, color) != color) repaint();
}

void TrendItem::repaint() {
  emit changed();
  update();
}

const Trend* TrendItem::trend() const {
  if (!_page || _line < 0 || _line >= _page->rowCount()) return nullptr;
  return &_page->page().lines()[static_cast<std::size_t>(_line)].trend;
}

const std::vector<Trend::Point>& TrendItem::points() const {
  static const std::vector<Trend::Point> kNone;
  return trend() ? trend()->points() : kNone;
}

double TrendItem::seconds() const {
  if (points().empty()) return 0;
  return std::chrono::duration<double>(points().back().uptime - points().front().uptime).count();
}

void TrendItem::paint(QPainter* painter) {
  if (points().size() < 2) return;
  const double margin = 2;
  const auto start = points().front().uptime;
  const double length = static_cast<double>((points().back().uptime - start).count());
  const double lowest = minimum();
  const double highest = maximum();
  const auto place = [&](const Trend::Point& point) {
    const double along = static_cast<double>((point.uptime - start).count()) / length;
    const double up = highest > lowest ? (point.value - lowest) / (highest - lowest) : 0.5;
    return QPointF(margin + along * (width() - 2 * margin),
                   margin + (1 - up) * (height() - 2 * margin));
  };
  QPolygonF drawn;
  for (const Trend::Point& point : points()) drawn << place(point);
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(_color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->drawPolyline(drawn);
  painter->setBrush(_color);
  painter->setPen(Qt::NoPen);
  painter->drawEllipse(drawn.back(), margin, margin);
}

}  // namespace quorin
