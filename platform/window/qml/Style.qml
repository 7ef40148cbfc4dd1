import QtQuick
import org.quorin.window

/// Colours and measures, all derived from the desktop's colour scheme and text size.
QtObject {
    required property Appearance appearance

    readonly property bool dark: appearance.dark
    readonly property color window: dark ? "#1e1e20" : "#f6f6f7"
    readonly property color surface: dark ? "#29292c" : "#ffffff"
    readonly property color text: dark ? "#f4f4f6" : "#1d1d20"
    readonly property color quiet: dark ? "#a8a8ae" : "#606066"
    readonly property color line: dark ? "#3a3a3e" : "#e1e1e4"
    readonly property color accent: dark ? "#7fb2f0" : "#1a5fb4"
    readonly property color selected: dark ? "#2f4258" : "#dbe8f8"
    readonly property color mark: dark ? "#6b5a1e" : "#ffe9a8"

    readonly property real textSize: appearance.textSize
    readonly property real smallSize: Math.round(textSize * 0.85)
    readonly property real titleSize: textSize
    readonly property real gap: Math.round(textSize * 0.75)
    readonly property real rowHeight: Math.max(48, Math.round(textSize * 2.6))
    readonly property real radius: 8
    readonly property int quick: 160
}
