import QtQuick

// A text: one line, or as many as there is room for.
View {
    id: view

    Accessible.role: Accessible.StaticText
    Accessible.name: node.text
    Accessible.focusable: false
    Accessible.ignored: !enabled || node.text === ""

    Text {
        id: text

        readonly property bool isOneLine: view.height < 2.2 * font.pixelSize

        anchors.fill: parent
        text: view.node.text
        textFormat: Text.PlainText
        color: view.node.textColor
        font { pixelSize: view.node.fontSize; weight: view.node.bold ? Font.DemiBold : Font.Normal }
        horizontalAlignment: view.node.alignment
        verticalAlignment: Text.AlignVCenter
        wrapMode: isOneLine ? Text.NoWrap : Text.Wrap
        elide: Text.ElideRight
        // Better nothing than a stump of a word.
        visible: !isOneLine || width > implicitWidth * 0.5
    }
}
