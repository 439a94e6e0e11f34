import QtQuick
import "qrc:/quillop/screen"

// Tells something once over the main screen.
Strip {
    id: notice

    required property QtObject node

    isOneLine: measure.width <= roomForText
    contentHeight: words.implicitHeight
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
        maximumLineCount: 3
        elide: Text.ElideRight
        color: Style.text
        font.pixelSize: Style.captionSize

        Accessible.role: Accessible.Notification
        Accessible.name: text
        Accessible.ignored: !enabled
    }
}
