import QtQuick
import org.quorin.window

/// One line of a page: a section's header or a row. There are many: what few lines need is made when a
/// line needs it.
Rectangle {
    id: row

    required property int index
    required property string mainText
    required property string detailText
    required property bool isHeader
    required property int accessibleRole
    required property string unit
    required property string meaning
    required property bool isOpen
    required property int changes
    required property int trendSize

    required property Style style
    required property PageModel page
    required property bool current
    required property bool marking

    signal pressed
    signal menuWanted
    signal trendWanted
    signal markMade

    readonly property bool hasTrend: trendSize > 1
    // Side by side where both fit, else the value stands below. A value far from its name is hard to
    // follow with the eye.
    readonly property real room: Math.min(width - 2 * style.gap, style.textSize * 46) - (page.isMenu ? style.textSize : 0)
    readonly property real trendRoom: hasTrend ? style.textSize * 4 + style.gap : 0
    readonly property bool beside: name.implicitWidth + shown.implicitWidth + style.gap + trendRoom <= room
    readonly property real textsHeight: beside ? Math.max(name.implicitHeight, shown.implicitHeight) : name.implicitHeight + (detailText === "" ? 0 : shown.implicitHeight)
    readonly property real contentHeight: textsHeight + (meaning === "" ? 0 : explanation.height)
    readonly property real above: isHeader ? style.gap : (height - contentHeight) / 2

    // Rows may be made in any order; assistive technology reads them in the order of z.
    z: index
    color: !isHeader && (current || isOpen) ? style.selected : style.surface
    implicitHeight: isHeader ? name.implicitHeight + 1.5 * style.gap : Math.max(style.rowHeight, contentHeight + style.gap)

    Accessible.ignored: !visible
    Accessible.role: accessibleRole
    Accessible.name: mainText
    Accessible.description: isHeader ? "" : detailText
    Accessible.focusable: !isHeader
    Accessible.focused: current
    Accessible.selected: isOpen
    Accessible.onPressAction: if (!isHeader) row.pressed()

    // A line that is made or made into another one has not changed.
    property bool marked: false
    property bool fresh: true
    onChangesChanged: if (!fresh) { marked = true; markMade(); }
    onMarkingChanged: if (!marking) marked = false
    ListView.onPooled: { marked = false; fresh = true; }
    ListView.onReused: fresh = false
    Component.onCompleted: fresh = false

    // A changed value stands out until the page's marks go.
    Loader {
        active: row.marked
        anchors.fill: parent
        sourceComponent: Rectangle { color: row.style.mark }
    }
    Text {
        id: name
        color: row.isHeader ? row.style.accent : row.detailText === "" ? row.style.text : row.style.quiet
        font.pixelSize: row.isHeader ? row.style.smallSize : row.style.textSize
        font.bold: row.isHeader
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        text: row.wrapping(row.mainText)
        x: row.style.gap
        y: row.above
        width: row.beside ? implicitWidth : row.room - (row.detailText === "" ? 0 : row.trendRoom)
    }
    Text {
        id: shown
        color: row.style.text
        font.pixelSize: row.style.textSize
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        text: row.wrapping(row.unit === "" ? row.detailText : row.detailText + " " + row.unit)
        visible: row.detailText !== ""
        width: row.beside ? implicitWidth : row.room
        x: row.style.gap + (row.beside ? row.room - width : 0)
        y: row.above + (row.beside ? 0 : name.implicitHeight)
    }
    Loader {
        id: explanation
        active: row.meaning !== ""
        x: row.style.gap
        y: row.above + row.textsHeight
        width: row.room
        sourceComponent: Text {
            color: row.style.quiet
            font.pixelSize: row.style.smallSize
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            text: row.meaning
            horizontalAlignment: row.beside ? Text.AlignRight : Text.AlignLeft
        }
    }
    Loader {
        id: trend
        active: row.hasTrend && !row.isHeader
        width: row.style.textSize * 4
        height: row.style.textSize * 1.3
        // Under one another where the texts leave room.
        x: row.style.gap + (row.beside ? Math.max(name.width + row.style.gap, Math.min(row.room * 0.6, row.room - shown.width - row.style.gap - width)) : row.room - width)
        y: row.above
        sourceComponent: TrendLine {
            page: row.page
            line: row.index
            revision: row.page.samples
            color: row.style.accent
        }
    }
    Loader {
        active: row.page.isMenu
        anchors { right: parent.right; rightMargin: row.style.gap; verticalCenter: parent.verticalCenter }
        sourceComponent: Chevron {
            style: row.style
            color: row.style.quiet
        }
    }
    Rectangle {
        visible: !row.isHeader
        x: row.style.gap
        y: row.height - 1
        width: row.width - x
        height: 1
        color: row.style.line
    }

    TapHandler {
        enabled: !row.isHeader
        onTapped: (point) => {
            if (row.hasTrend && point.position.x > trend.x && point.position.x < trend.x + trend.width)
                row.trendWanted();
            else
                row.pressed();
        }
        onLongPressed: row.menuWanted()
    }

    // Names may break behind an underscore.
    function wrapping(text: string): string {
        return text.replace(/_/g, "_\u200b");
    }
}
