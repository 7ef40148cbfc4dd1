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
    // Three dots.
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
    Chevron {
        visible: button.glyph === "back"
        style: button.style
        pointsLeft: true
        anchors.centerIn: parent
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
