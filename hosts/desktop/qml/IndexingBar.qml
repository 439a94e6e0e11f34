import QtQuick

// Tells over the main screen how far the media library is.
Strip {
    id: bar

    required property QtObject node
    readonly property string title: "Looking through your videos"

    // By the longest text there usually is, so that it does not change from one number to the next.
    isOneLine: longest.width <= roomForText
    closeTitle: "Hide progress"
    onClosed: node.hide()

    TextMetrics {
        id: longest

        font: title.font
        text: bar.title + ":  88,888 of 88,888, about 58 minutes left"
    }

    Item {
        anchors.fill: parent

        Accessible.role: Accessible.ProgressBar
        Accessible.name: bar.title
        Accessible.description: bar.node.text
        Accessible.readOnly: true
        Accessible.ignored: !enabled

        // Assistive technology asks for the value and the ends of its range by these names.
        property real value: bar.node.fraction
        readonly property real minimumValue: 0
        readonly property real maximumValue: 1

        Text {
            id: title

            y: bar.isOneLine ? Math.round((progress.y - height) / 2) : 4
            width: parent.width
            text: bar.isOneLine ? bar.title + ":" : bar.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: "#FFFFFF"
            font { pixelSize: 15; weight: Font.Medium }
        }
        Text {
            id: details

            x: bar.isOneLine ? Math.ceil(title.implicitWidth) + 5 : 0
            y: bar.isOneLine ? title.y : title.y + title.height + 1
            width: parent.width - x
            text: bar.node.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: "#C6CED3"
            font.pixelSize: 15
        }
        ProgressBar {
            id: progress

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; bottomMargin: 4 }
            height: 3
            value: bar.node.fraction
        }
    }
}
