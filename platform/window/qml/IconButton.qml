import QtQuick
import org.quorin.window

/// A touchable button with a drawn sign, so that no icon theme is needed.
Item {
    id: button

    required property Style style
    required property string name
    required property string glyph

    signal pressed

    width: style.rowHeight
    height: style.rowHeight
    anchors.verticalCenter: parent.verticalCenter

    Accessible.ignored: !visible
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: button.pressed()

    Rectangle {
        anchors { fill: parent; margins: 4 }
        radius: button.style.radius
        color: button.style.selected
        visible: tap.pressed || hover.hovered
    }
    Loader {
        active: button.glyph === "menu"
        anchors.centerIn: parent
        sourceComponent: Column {
            spacing: 4
            Rectangle { width: 4; height: 4; radius: 2; color: button.style.text }
            Rectangle { width: 4; height: 4; radius: 2; color: button.style.text }
            Rectangle { width: 4; height: 4; radius: 2; color: button.style.text }
        }
    }
    Loader {
        active: button.glyph === "back"
        anchors.centerIn: parent
        sourceComponent: Chevron {
            style: button.style
            pointsLeft: true
        }
    }
    // A cross.
    Repeater {
        model: button.glyph === "close" ? 2 : 0
        Rectangle {
            required property int index
            width: button.style.textSize; height: 2; radius: 1
            color: button.style.text
            antialiasing: true
            anchors.centerIn: parent
            rotation: index ? 45 : -45
        }
    }
    HoverHandler { id: hover }
    TapHandler {
        id: tap
        onTapped: button.pressed()
    }
}
