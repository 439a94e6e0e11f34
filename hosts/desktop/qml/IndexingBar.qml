import QtQuick
import "qrc:/quillop/screen"

// Tells over the main screen how far the media library is.
Strip {
    id: bar

    required property QtObject node
    readonly property string title: "Looking through your videos"

    // By the longest text there usually is, so that it does not change from one number to the next.
    isOneLine: longest.width <= roomForText
    contentHeight: heading.implicitHeight + details.implicitHeight + Style.space
    closeTitle: "Hide progress"
    onClosed: node.hide()

    TextMetrics {
        id: longest

        font: heading.font
        text: bar.title + ":  88,888 of 88,888, about 58 minutes left"
    }

    Item {
        anchors { fill: parent; topMargin: Style.space / 2; bottomMargin: Style.space / 2 }

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
            id: heading

            y: bar.isOneLine ? Math.round((progress.y - height) / 2) : Style.space / 2
            width: parent.width
            text: bar.isOneLine ? bar.title + ":" : bar.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Style.text
            font { pixelSize: Style.captionSize; weight: Font.Medium }
        }
        Text {
            id: details

            x: bar.isOneLine ? Math.ceil(heading.implicitWidth) + 5 : 0
            y: bar.isOneLine ? heading.y : heading.y + heading.height
            width: parent.width - x
            text: bar.node.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Style.secondaryText
            font.pixelSize: Style.captionSize
        }
        ProgressBar {
            id: progress

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; bottomMargin: Style.space / 2 }
            height: 4
            value: bar.node.fraction
        }
    }
}
