import QtQuick
import "qrc:/quillop/screen"

// Plain text on the settings page.
Text {
    width: parent.width
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: Style.lineHeight
    color: Style.secondaryText
    font.pixelSize: Style.captionSize

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !enabled
}
