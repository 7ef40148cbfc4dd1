import QtQuick
import org.quorin.window

/// The window: the pages of the stack beside or above one another.
Window {
    id: window

    required property StackModel stack
    required property Appearance appearance

    readonly property Style style: Style { appearance: window.appearance }
    readonly property bool wide: width >= 900
    readonly property int top: stack.count - 1
    readonly property int firstLevel: wide ? Math.max(0, top - 2) : top
    property int focusLevel: 0

    minimumWidth: 240
    minimumHeight: 240
    visible: true
    title: stack.path === "" ? "Quorin" : stack.path
    color: style.window

    onTopChanged: { focusLevel = top; focusPage(); }
    Component.onCompleted: focusPage()

    Item {
        id: desk
        anchors.fill: parent
        focus: true

        Repeater {
            id: pages
            model: window.stack
            delegate: PageView {
                id: view
                required property int index

                style: window.style
                stack: window.stack
                level: index
                accessible: window.appearance.accessible
                hasBack: index === window.firstLevel && window.top > 0
                visible: index >= window.firstLevel
                height: desk.height
                width: window.columnWidth(index)
                x: window.columnX(index) + arrival
                z: index

                // A new page slides in.
                property real arrival: 0
                NumberAnimation on arrival {
                    id: slide
                    running: false
                    from: window.wide ? 0 : desk.width / 3
                    to: 0
                    duration: window.style.quick
                    easing.type: Easing.OutCubic
                }
                Component.onCompleted: if (index > 0) slide.start()

                onFocusWanted: window.focusLevel = index
                onBackWanted: window.stack.back()
                onMenuWanted: (line) => menu.open(view, line)
                onTrendWanted: (line) => trend.open(view.page, line)

                Rectangle {
                    visible: window.wide && index > window.firstLevel
                    width: 1
                    height: parent.height
                    color: window.style.line
                    z: 3
                }
                // Swiping right leaves the page.
                DragHandler {
                    target: null
                    enabled: window.stack.count > 1 && !window.wide
                    acceptedDevices: PointerDevice.TouchScreen
                    yAxis.enabled: false
                    onActiveChanged: if (!active && centroid.position.x - centroid.pressPosition.x > width / 4) window.stack.back()
                }
            }
        }

        Loader {
            active: window.wide && window.top < 2
            x: window.columnX(window.top) + window.columnWidth(window.top) + (desk.width - window.columnX(window.top) - window.columnWidth(window.top) - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: RowText {
                style: window.style
                text: window.top === 0 ? "Choose a technology" : "Choose a category"
                color: window.style.quiet
            }
        }

        TapHandler {
            acceptedButtons: Qt.BackButton
            onTapped: window.stack.back()
        }

        Keys.onPressed: (event) => event.accepted = window.key(event)
    }

    // Made when they are first wanted.
    Loader {
        id: menu
        anchors.fill: parent
        onLoaded: {
            item.closed.connect(window.focusPage);
            item.trendWanted.connect((page, line) => trend.open(page, line));
        }
        function open(view: PageView, line: int) {
            if (!item)
                setSource("ContextMenu.qml", { style: window.style, stack: window.stack });
            item.open(view, line);
        }
    }
    Loader {
        id: trend
        anchors.fill: parent
        onLoaded: item.closed.connect(window.focusPage)
        function open(page: PageModel, line: int) {
            if (!item)
                setSource("TrendPanel.qml", { style: window.style });
            item.open(page, line);
        }
    }

    Timer {
        interval: 1000
        repeat: true
        running: window.visible
        onTriggered: if (window.visibility !== Window.Minimized) window.stack.refreshAges()
    }

    function columnWidth(level: int): real {
        if (!wide)
            return desk.width;
        const narrow = [style.textSize * 13, style.textSize * 17, 0, style.textSize * 13];
        if (level !== 2)
            return narrow[level];
        let rest = desk.width;
        for (let other = firstLevel; other <= top; ++other)
            rest -= narrow[other];
        return rest;
    }
    function columnX(level: int): real {
        let x = 0;
        for (let before = firstLevel; before < level; ++before)
            x += columnWidth(before);
        return x;
    }
    function pageAt(level: int): PageView {
        return pages.itemAt(level) as PageView;
    }
    function focusPage() {
        const view = pageAt(Math.min(focusLevel, top));
        if (view)
            view.takeFocus();
    }
    function focusColumn(level: int): bool {
        if (level < firstLevel || level > top)
            return false;
        focusLevel = level;
        focusPage();
        return true;
    }

    // Keys of a page. What is typed is searched for.
    function key(event): bool {
        const view = pageAt(focusLevel);
        if (!view)
            return false;
        const control = event.modifiers & Qt.ControlModifier;
        switch (event.key) {
        case Qt.Key_Up: view.move(-1, 1); return true;
        case Qt.Key_Down: view.move(1, 1); return true;
        case Qt.Key_PageUp: view.move(-1, view.rowsInSight()); return true;
        case Qt.Key_PageDown: view.move(1, view.rowsInSight()); return true;
        case Qt.Key_Home: view.toEnd(-1); return true;
        case Qt.Key_End: view.toEnd(1); return true;
        case Qt.Key_Left: return focusColumn(focusLevel - 1);
        case Qt.Key_Right: return focusColumn(focusLevel + 1);
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (view.wanted !== "") {
                view.wanted = "";
                return true;
            }
            view.press(view.currentLine);
            return true;
        case Qt.Key_Escape:
            if (view.wanted !== "") {
                view.wanted = "";
                return true;
            }
            return stack.back();
        case Qt.Key_Back: return stack.back();
        case Qt.Key_Backspace:
            if (view.wanted === "")
                return stack.back();
            view.search(view.wanted.slice(0, -1), view.currentLine);
            return true;
        case Qt.Key_F3: view.search(view.wanted, view.currentLine + 1); return true;
        case Qt.Key_Menu: menu.open(view, view.currentLine); return true;
        }
        if (control && event.key === Qt.Key_C) {
            stack.copy(focusLevel, event.modifiers & Qt.ShiftModifier ? -1 : view.currentLine);
            return true;
        }
        if (control && event.key === Qt.Key_T) {
            trend.open(view.page, view.currentLine);
            return true;
        }
        if (control && event.key === Qt.Key_Q) {
            window.close();
            return true;
        }
        if (control || event.modifiers & Qt.AltModifier || event.text === "" || event.text < " ")
            return false;
        if (event.text === " " && view.wanted === "")
            return false;
        view.search(view.wanted + event.text, view.currentLine);
        return true;
    }
}
