import QtQuick
import org.quorin.window

/// One line of a page: a section's header or a row.
Item {
    id: row

    required property int index
    required property string mainText
    required property string detailText
    required property bool isHeader
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
    readonly property string value: wrapping(unit === "" ? detailText : detailText + " " + unit)
    // Side by side where both fit, else the value stands below.
    // A value far from its name is hard to follow with the eye.
    readonly property real room: Math.min(width - 2 * style.gap, style.textSize * 46) - (page.isMenu ? style.textSize : 0)
    readonly property real trendRoom: hasTrend ? style.textSize * 4 + style.gap : 0
    readonly property bool beside: name.implicitWidth + shown.implicitWidth + style.gap + trendRoom <= room

    // Rows may be made in any order; assistive technology reads them in the order of z.
    z: index
    implicitHeight: isHeader ? header.implicitHeight + 1.5 * style.gap : Math.max(style.rowHeight, texts.height + style.gap)

    Accessible.ignored: !visible
    Accessible.role: isHeader ? Accessible.Heading : Accessible.ListItem
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

    Rectangle {
        anchors.fill: parent
        visible: !row.isHeader && (row.current || row.isOpen)
        color: row.style.selected
    }

    // A changed value stands out until the page's marks fade.
    Rectangle {
        anchors.fill: parent
        color: row.style.mark
        opacity: row.marked ? 0.7 : 0
        visible: opacity > 0
        Behavior on opacity {
            enabled: !row.marked
            NumberAnimation { duration: row.style.quick }
        }
    }

    RowText {
        id: header
        visible: row.isHeader
        style: row.style
        text: row.isHeader ? row.mainText : ""
        font.pixelSize: row.style.smallSize
        font.bold: true
        color: row.style.accent
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: row.style.gap; bottomMargin: row.style.gap / 2 }
    }

    Item {
        id: texts
        visible: !row.isHeader
        anchors { left: parent.left; leftMargin: row.style.gap; verticalCenter: parent.verticalCenter }
        width: row.room
        readonly property real shownHeight: shown.visible ? shown.implicitHeight : 0
        height: (row.beside ? Math.max(name.implicitHeight, shownHeight) : name.implicitHeight + shownHeight) + (explanation.visible ? explanation.implicitHeight : 0)

        RowText {
            id: name
            style: row.style
            text: row.isHeader ? "" : row.wrapping(row.mainText)
            width: row.beside ? implicitWidth : parent.width - (row.detailText === "" ? 0 : row.trendRoom)
            color: row.detailText === "" ? row.style.text : row.style.quiet
        }
        RowText {
            id: shown
            style: row.style
            text: row.isHeader ? "" : row.value
            visible: text !== ""
            width: row.beside ? implicitWidth : parent.width
            x: row.beside ? parent.width - width : 0
            y: row.beside ? 0 : name.implicitHeight
        }
        RowText {
            id: explanation
            style: row.style
            text: row.isHeader ? "" : row.meaning
            visible: text !== ""
            width: parent.width
            y: parent.height - height
            horizontalAlignment: row.beside ? Text.AlignRight : Text.AlignLeft
            font.pixelSize: row.style.smallSize
            color: row.style.quiet
        }
        Loader {
            id: drawn
            active: row.hasTrend && !row.isHeader
            width: row.style.textSize * 4
            height: row.style.textSize * 1.3
            // Under one another where the texts leave room.
            x: row.beside ? Math.max(name.width + row.style.gap, Math.min(parent.width * 0.6, shown.x - row.style.gap - width)) : parent.width - width
            sourceComponent: TrendLine {
                page: row.page
                line: row.index
                revision: row.page.samples
                color: row.style.accent
            }
        }
    }

    Chevron {
        visible: row.page.isMenu
        style: row.style
        color: row.style.quiet
        anchors { right: parent.right; rightMargin: row.style.gap; verticalCenter: parent.verticalCenter }
    }

    Rectangle {
        visible: !row.isHeader
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: row.style.gap }
        height: 1
        color: row.style.line
    }

    TapHandler {
        enabled: !row.isHeader
        onTapped: (point) => {
            const left = texts.x + drawn.x;
            if (row.hasTrend && point.position.x > left && point.position.x < left + drawn.width)
                row.trendWanted();
            else
                row.pressed();
        }
        onLongPressed: row.menuWanted()
    }
    TapHandler {
        enabled: !row.isHeader
        acceptedButtons: Qt.RightButton
        onTapped: row.menuWanted()
    }

    // Names may break behind an underscore.
    function wrapping(text: string): string {
        return text.replace(/_/g, "_\u200b");
    }
}
