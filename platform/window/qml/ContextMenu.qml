import QtQuick
import org.quorin.window

/// The menu of a page: what can be done with a row, and with the page.
Item {
    id: menu

    required property Style style
    required property StackModel stack

    signal closed
    signal trendWanted(PageModel page, int line)

    property PageView view: null
    property int line: -1
    property int chosen: 0
    readonly property var entries: [
        { name: "Copy row", keys: "Ctrl+C", enabled: menu.line >= 0, act: () => menu.stack.copy(menu.view.level, menu.line) },
        { name: "Copy page", keys: "Ctrl+Shift+C", enabled: true, act: () => menu.stack.copy(menu.view.level, -1) },
        { name: "Trend", keys: "Ctrl+T", enabled: menu.line >= 0 && menu.view && menu.view.page.at(menu.line, "trendSize") > 1, act: () => menu.trendWanted(menu.view.page, menu.line) }
    ]

    visible: view !== null

    function open(view: PageView, line: int) {
        menu.view = view;
        menu.line = line;
        chosen = 0;
        forceActiveFocus();
    }
    function close() {
        view = null;
        closed();
    }
    function choose(index: int) {
        const entry = entries[index];
        if (!entry.enabled)
            return;
        entry.act();
        const opened = entry.name === "Trend";
        view = null;
        if (!opened)
            closed();
    }

    Keys.onPressed: (event) => {
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Up: chosen = (chosen + entries.length - 1) % entries.length; break;
        case Qt.Key_Down: chosen = (chosen + 1) % entries.length; break;
        case Qt.Key_Return:
        case Qt.Key_Enter: choose(chosen); break;
        default: close();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "#000000"
        opacity: 0.25
        TapHandler { onTapped: menu.close() }
    }
    Rectangle {
        width: Math.min(parent.width - 2 * menu.style.gap, menu.style.textSize * 20)
        height: column.height
        anchors { right: parent.right; top: parent.top; margins: menu.style.gap }
        radius: menu.style.radius
        color: menu.style.surface
        border.color: menu.style.line
        Accessible.ignored: !visible
        Accessible.role: Accessible.PopupMenu
        Accessible.name: "Menu"

        Column {
            id: column
            width: parent.width
            Repeater {
                model: menu.entries
                Item {
                    id: entry
                    required property var modelData
                    required property int index
                    width: column.width
                    height: menu.style.rowHeight
                    opacity: modelData.enabled ? 1 : 0.45
                    Accessible.ignored: !visible
                    Accessible.role: Accessible.MenuItem
                    Accessible.name: modelData.name
                    Accessible.onPressAction: menu.choose(index)
                    Rectangle {
                        anchors { fill: parent; margins: 2 }
                        radius: menu.style.radius
                        visible: menu.chosen === entry.index
                        color: menu.style.selected
                    }
                    RowText {
                        style: menu.style
                        text: entry.modelData.name
                        anchors { left: parent.left; verticalCenter: parent.verticalCenter; leftMargin: menu.style.gap }
                    }
                    RowText {
                        style: menu.style
                        text: entry.modelData.keys
                        font.pixelSize: menu.style.smallSize
                        color: menu.style.quiet
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter; rightMargin: menu.style.gap }
                    }
                    TapHandler { onTapped: menu.choose(entry.index) }
                }
            }
        }
    }
}
