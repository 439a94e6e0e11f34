import QtQuick

// The title of a group of settings.
Text {
    width: parent.width
    topPadding: 12
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    color: "#FFFFFF"
    font { pixelSize: 17; weight: Font.DemiBold }

    Accessible.role: Accessible.Heading
    Accessible.name: text
    Accessible.focusable: false
    Accessible.ignored: !enabled
}
