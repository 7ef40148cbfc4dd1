#include "bench/window/bare.h"

namespace quorin::bench {

namespace {

constexpr const char* kPage = R"(
import QtQuick
Window {
    required property var rows
    width: 390
    height: 844
    visible: true
    ListView {
        objectName: "list"
        anchors.fill: parent
        focus: true
        model: rows
        reuseItems: true
        highlightFollowsCurrentItem: false
        delegate: Rectangle {
            color: ListView.isCurrentItem ? "#dbe8f8" : "#ffffff"
            required property string mainText
            required property string detailText
            width: ListView.view.width
            height: 48
            Text {
                text: mainText
                font.pixelSize: 15
                anchors { left: parent.left; leftMargin: 11; verticalCenter: parent.verticalCenter }
            }
            Text {
                text: detailText
                font.pixelSize: 15
                anchors { right: parent.right; rightMargin: 11; verticalCenter: parent.verticalCenter }
            }
        }
    }
}
)";

enum Role { kText = Qt::UserRole, kDetail };

}  // namespace

void BareModel::change(int row, const QString& detail) {
  _rows[static_cast<std::size_t>(row)].detail = detail;
  emit dataChanged(index(row), index(row), {kDetail});
}

int BareModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QVariant BareModel::data(const QModelIndex& index, int role) const {
  const Row& row = _rows[static_cast<std::size_t>(index.row())];
  return role == kText ? row.text : row.detail;
}

QHash<int, QByteArray> BareModel::roleNames() const {
  return {{kText, "mainText"}, {kDetail, "detailText"}};
}

BareWindow::BareWindow(BareModel& model) {
  _engine.setInitialProperties({{"rows", QVariant::fromValue(&model)}});
  _engine.loadData(kPage);
}

QQuickWindow& BareWindow::window() const {
  return *qobject_cast<QQuickWindow*>(_engine.rootObjects().constFirst());
}

}  // namespace quorin::bench
