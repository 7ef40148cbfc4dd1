import QtQuick
import org.quorin.window

/// One page: its title bar, its table and its footer.
Item {
    id: view

    required property Style style
    required property PageModel page
    required property StackModel stack
    required property int level
    required property bool accessible
    required property bool hasBack
    property string wanted: ""  // what is being searched

    signal focusWanted
    signal menuWanted(int line)
    signal trendWanted(int line)
    signal backWanted

    readonly property alias currentLine: list.currentIndex

    Rectangle {
        anchors.fill: parent
        color: view.style.surface
    }

    Rectangle {
        id: bar
        width: parent.width
        height: Math.max(view.style.rowHeight, title.implicitHeight + view.style.gap)
        color: view.style.window
        z: 2

        IconButton {
            id: back
            style: view.style
            visible: view.hasBack
            name: "Back"
            glyph: "back"
            onPressed: view.backWanted()
        }
        RowText {
            id: title
            style: view.style
            text: view.page.title
            font.pixelSize: view.style.titleSize
            anchors { left: back.visible ? back.right : parent.left; right: more.left; verticalCenter: parent.verticalCenter; leftMargin: back.visible ? 0 : view.style.gap }
            Accessible.ignored: !visible
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        IconButton {
            id: more
            style: view.style
            anchors.right: parent.right
            name: "Menu"
            glyph: "menu"
            onPressed: view.menuWanted(view.currentLine)
        }
        Rectangle {
            width: parent.width
            height: 1
            anchors.bottom: parent.bottom
            color: view.style.line
        }
    }

    ListView {
        id: list
        anchors { left: parent.left; right: parent.right; top: bar.bottom; bottom: footer.top }
        clip: true
        model: view.page
        reuseItems: !view.accessible
        // A screen reader sees only lines that exist.
        cacheBuffer: view.accessible ? 1000000 : 400
        boundsBehavior: Flickable.DragOverBounds
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        currentIndex: -1
        Component.onCompleted: currentIndex = view.page.rowFrom(-1, 1)

        Accessible.ignored: !visible
        Accessible.role: Accessible.List
        Accessible.name: view.page.title

        delegate: PageLine {
            width: list.width
            style: view.style
            page: view.page
            current: list.currentIndex === index && list.activeFocus
            marking: marks.running
            onMarkMade: marks.restart()
            onPressed: view.press(index)
            onMenuWanted: { list.currentIndex = index; view.menuWanted(index); }
            onTrendWanted: view.trendWanted(index)
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: (point) => {
                const at = list.contentItem.mapFromItem(null, point.scenePosition);
                const item = list.itemAt(at.x, at.y) as PageLine;
                if (item && !item.isHeader)
                    item.menuWanted();
            }
        }
        onActiveFocusChanged: if (activeFocus) view.focusWanted()
    }

    Timer {
        id: marks
        interval: 1500
    }

    // The header of the section in sight.
    Loader {
        id: sticky
        readonly property int first: { view.page.reloads; return list.contentY > 0 ? list.indexAt(1, list.contentY + 1) : -1; }
        readonly property int header: { view.page.reloads; return first < 0 ? -1 : view.page.headerOf(first); }
        active: header >= 0
        width: list.width
        anchors.top: bar.bottom
        sourceComponent: Rectangle {
            height: inSight.implicitHeight + view.style.gap
            color: view.style.surface
            RowText {
                id: inSight
                style: view.style
                text: { view.page.reloads; return view.page.at(sticky.header, "mainText") ?? ""; }
                font.pixelSize: view.style.smallSize
                font.bold: true
                color: view.style.accent
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: view.style.gap }
            }
            Rectangle { width: parent.width; height: 1; anchors.bottom: parent.bottom; color: view.style.line }
        }
    }

    Loader {
        active: list.count === 0
        anchors.centerIn: list
        sourceComponent: RowText {
            style: view.style
            text: "No entries"
            color: view.style.quiet
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    // How far down the page is.
    Rectangle {
        visible: list.contentHeight > list.height
        anchors.right: list.right
        width: 4
        radius: 2
        color: view.style.quiet
        opacity: list.moving ? 0.7 : 0.25
        height: Math.max(24, list.visibleArea.heightRatio * list.height)
        y: list.y + list.visibleArea.yPosition * list.height
    }

    Loader {
        id: footer
        readonly property string text: view.wanted === "" ? view.page.age : "Find: " + view.wanted
        active: text !== ""
        width: parent.width
        height: active ? implicitHeight : 0
        anchors.bottom: parent.bottom
        sourceComponent: Rectangle {
            implicitHeight: said.implicitHeight + view.style.gap
            color: view.style.window
            RowText {
                id: said
                style: view.style
                text: footer.text
                font.pixelSize: view.style.smallSize
                color: view.style.quiet
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: view.style.gap }
                Accessible.ignored: !visible
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    function takeFocus() {
        if (list.currentIndex < 0)
            list.currentIndex = page.rowFrom(-1, 1);
        list.forceActiveFocus();
    }
    function press(line: int) {
        list.currentIndex = line;
        list.forceActiveFocus();
        stack.press(level, line);
    }
    function show(line: int) {
        if (line < 0)
            return;
        list.currentIndex = line;
        list.positionViewAtIndex(line, ListView.Contain);
        // Not under the header that stays in sight.
        const item = list.itemAtIndex(line);
        if (item && item.y - list.contentY < style.rowHeight)
            list.contentY = Math.max(list.originY, item.y - style.rowHeight);
    }
    function move(direction: int, count: int) {
        let line = list.currentIndex;
        for (let i = 0; i < count; ++i)
            line = page.rowFrom(line, direction);
        show(line);
    }
    function toEnd(direction: int) {
        show(page.rowFrom(direction < 0 ? -1 : list.count, -direction));
    }
    function rowsInSight(): int {
        return Math.max(1, Math.floor(list.height / style.rowHeight) - 1);
    }
    function search(text: string, from: int) {
        wanted = text;
        if (text === "")
            return;
        let found = page.find(text, from);
        if (found >= 0 && page.at(found, "isHeader"))
            found = page.rowFrom(found, 1);
        show(found);
    }
}
