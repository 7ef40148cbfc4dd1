import QtQuick
import org.quorin.window

/// A text of the page's own, never cut off: it wraps, inside a word where there is no blank.
Text {
    required property Style style
    color: style.text
    font.pixelSize: style.textSize
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.ignored: true
}
