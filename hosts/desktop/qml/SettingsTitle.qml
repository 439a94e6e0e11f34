import QtQuick
import "qrc:/quillop/screen"

// The title of a group of settings.
Text {
    width: parent.width
    topPadding: 2 * Style.space
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    color: Style.text
    font { pixelSize: Style.bodySize; weight: Font.DemiBold }

    Accessible.role: Accessible.Heading
    Accessible.name: text
    Accessible.ignored: !enabled
}
