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

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: button.pressed()

    Rectangle {
        anchors { fill: parent; margins: 4 }
        radius: button.style.radius
        color: button.style.selected
        visible: tap.pressed || hover.hovered
    }
    // Three dots, or two strokes that meet on the left.
    Repeater {
        model: button.glyph === "menu" ? 3 : 0
        Rectangle {
            required property int index
            width: 4; height: 4; radius: 2
            color: button.style.text
            x: (button.width - width) / 2
            y: button.height / 2 - 2 + (index - 1) * 8
        }
    }
    Repeater {
        model: button.glyph === "back" ? 2 : 0
        Rectangle {
            required property int index
            width: 13; height: 2.2; radius: 1
            color: button.style.text
            antialiasing: true
            transformOrigin: Item.Left
            x: button.width / 2 - 5
            y: button.height / 2 - 1
            rotation: index ? 45 : -45
        }
    }
    HoverHandler { id: hover }
    TapHandler {
        id: tap
        onTapped: button.pressed()
    }
}
