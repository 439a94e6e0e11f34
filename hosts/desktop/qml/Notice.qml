import QtQuick

// Tells something once over the main screen.
Strip {
    id: notice

    required property QtObject node

    isOneLine: measure.width <= roomForText
    closeTitle: "Hide notice"
    onClosed: node.hide()

    TextMetrics {
        id: measure

        font: words.font
        text: notice.node.text
    }

    Text {
        id: words

        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        text: notice.node.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        color: "#FFFFFF"
        font.pixelSize: 15

        Accessible.role: Accessible.Notification
        Accessible.name: text
        Accessible.ignored: !enabled
    }
}
