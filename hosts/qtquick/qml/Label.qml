import QtQuick

// A text: one line, or as many as there is room for. The place is the app's: larger text grows in it as far as it goes.
View {
    id: view

    Accessible.role: Accessible.StaticText
    Accessible.name: node.text
    Accessible.ignored: !enabled || node.text === ""

    Text {
        id: text

        readonly property bool isOneLine: view.height < 2.2 * view.node.fontSize

        anchors.fill: parent
        text: view.node.text
        textFormat: Text.PlainText
        color: view.node.textColor
        font { pixelSize: Math.round(view.node.fontSize * Style.placeScale); weight: view.node.bold ? Font.DemiBold : Font.Normal }
        horizontalAlignment: view.node.alignment
        verticalAlignment: Text.AlignVCenter
        wrapMode: isOneLine ? Text.NoWrap : Text.Wrap
        lineHeight: isOneLine ? 1 : Style.lineHeight
        elide: Text.ElideRight
        fontSizeMode: Style.placeScale > 1 ? Text.Fit : Text.FixedSize
        minimumPixelSize: view.node.fontSize
        // Better nothing than a stump of a word.
        visible: !isOneLine || width > implicitWidth * 0.5
    }
}
