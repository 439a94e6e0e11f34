import QtQuick

// Plain text on the settings page.
Text {
    width: parent.width
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: 1.1
    color: "#C6CED3"
    font.pixelSize: 16

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.focusable: false
    Accessible.ignored: !enabled
}
