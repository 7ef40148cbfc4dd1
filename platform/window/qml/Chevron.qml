import QtQuick
import org.quorin.window

/// Two strokes that meet on the right, or on the left.
Item {
    id: chevron

    required property Style style
    property color color: style.text
    property bool pointsLeft: false

    width: style.textSize * 0.6
    height: width
    rotation: pointsLeft ? 180 : 0

    Repeater {
        model: 2
        Rectangle {
            required property int index
            width: chevron.width
            height: 2
            radius: 1
            color: chevron.color
            antialiasing: true
            transformOrigin: Item.Right
            y: chevron.height / 2 - 1
            rotation: index ? 45 : -45
        }
    }
}
