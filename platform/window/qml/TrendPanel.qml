import QtQuick
import org.quorin.window

/// A row's trend, large, with its range and its time.
Item {
    id: panel

    required property Style style

    signal closed

    property PageModel page: null
    property int line: -1
    readonly property string name: { if (page) page.reloads; return page ? page.at(line, "mainText") ?? "" : ""; }
    readonly property string unit: page ? page.at(line, "unit") ?? "" : ""

    visible: page !== null

    function open(page: PageModel, line: int) {
        if (page.at(line, "trendSize") < 2)
            return;
        panel.page = page;
        panel.line = line;
        forceActiveFocus();
    }
    function close() {
        page = null;
        closed();
    }
    function withUnit(number: real): string {
        const text = String(Math.round(number * 100) / 100);
        return unit === "" ? text : text + " " + unit;
    }

    Keys.onPressed: (event) => { event.accepted = true; close(); }

    Rectangle {
        anchors.fill: parent
        color: "#000000"
        opacity: 0.35
        TapHandler { onTapped: panel.close() }
    }
    Rectangle {
        width: Math.min(parent.width - 2 * panel.style.gap, panel.style.textSize * 36)
        height: Math.min(parent.height - 2 * panel.style.gap, panel.style.textSize * 22)
        anchors.centerIn: parent
        radius: panel.style.radius
        color: panel.style.surface
        border.color: panel.style.line

        Accessible.ignored: !visible
        Accessible.role: Accessible.Chart
        Accessible.name: panel.name
        Accessible.description: "minimum " + panel.withUnit(large.minimum) + ", maximum " + panel.withUnit(large.maximum) + ", over " + Math.round(large.seconds) + " s"

        RowText {
            id: heading
            style: panel.style
            text: panel.name
            font.bold: true
            anchors { left: parent.left; right: closing.left; top: parent.top; margins: panel.style.gap }
        }
        IconButton {
            id: closing
            style: panel.style
            name: "Close"
            glyph: "close"
            anchors { right: parent.right; top: parent.top; verticalCenter: undefined }
            onPressed: panel.close()
        }
        RowText {
            id: highest
            style: panel.style
            text: panel.withUnit(large.maximum)
            font.pixelSize: panel.style.smallSize
            color: panel.style.quiet
            anchors { left: parent.left; top: closing.bottom; margins: panel.style.gap }
        }
        RowText {
            style: panel.style
            text: panel.withUnit(large.minimum)
            font.pixelSize: panel.style.smallSize
            color: panel.style.quiet
            anchors { left: parent.left; bottom: time.top; margins: panel.style.gap }
        }
        TrendLine {
            id: large
            page: panel.page
            line: panel.line
            revision: panel.page ? panel.page.samples : 0
            color: panel.style.accent
            anchors { left: parent.left; right: parent.right; top: closing.bottom; bottom: time.top; leftMargin: panel.style.textSize * 6; rightMargin: panel.style.gap; topMargin: panel.style.gap; bottomMargin: panel.style.gap }
            Rectangle { width: 1; height: parent.height; color: panel.style.line }
            Rectangle { width: parent.width; height: 1; anchors.bottom: parent.bottom; color: panel.style.line }
        }
        Item {
            id: time
            height: start.implicitHeight
            anchors { left: large.left; right: large.right; bottom: parent.bottom; margins: panel.style.gap; leftMargin: 0; rightMargin: 0 }
            RowText {
                id: start
                style: panel.style
                text: "−" + Math.round(large.seconds) + " s"
                font.pixelSize: panel.style.smallSize
                color: panel.style.quiet
            }
            RowText {
                style: panel.style
                text: "last report"
                font.pixelSize: panel.style.smallSize
                color: panel.style.quiet
                anchors.right: parent.right
            }
        }
    }
}
