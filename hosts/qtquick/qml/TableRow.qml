import QtQuick
import QtQuick.Templates as T

// One row: a picture, a title, a detail under it.
T.ItemDelegate {
    id: row

    required property int index
    required property ListView table
    readonly property bool hasRoomForPicture: width >= 240
    property var content: table.node.content(index)

    // Another row of the list may be shown by the same item, and the content of a row may change.
    onIndexChanged: refresh()
    function refresh() { content = table.node.content(index) }

    width: table.width
    height: table.rowHeight
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    Accessible.role: Accessible.ListItem
    Accessible.name: content.title + ", " + content.detail
    Accessible.description: (index + 1) + " of " + table.count
    Accessible.selectable: true
    Accessible.selected: ListView.isCurrentItem && table.activeFocus
    Accessible.ignored: !enabled || content.title === ""
    Accessible.onPressAction: row.clicked()

    onClicked: {
        table.currentIndex = index
        table.node.select(index)
    }
    onPressed: table.showsFocus = false
    // A space is not for the row to be pressed by: it may be part of a title that is being typed.
    Keys.forwardTo: [table]
    // The keyboard's way into the list ends here, at its current row.
    onVisualFocusChanged: if (visualFocus) table.showsFocus = true

    Connections {
        target: row.table.node
        function onChanged() { row.refresh() }
    }

    background: Item {
        Rectangle {
            id: card

            anchors.fill: parent
            anchors.bottomMargin: 4
            anchors.rightMargin: row.table.gutter
            radius: Style.smallCorner + 2
            color: row.content.color

            Glow {
                button: row
                radius: parent.radius
            }
        }
        Rectangle {
            anchors.fill: card
            visible: contrast.high
            color: "transparent"
            radius: card.radius
            border { width: 1; color: Style.text }
        }
        FocusRing {
            anchors.fill: card
            radius: card.radius
            visible: row.ListView.isCurrentItem && row.table.activeFocus && row.table.showsFocus
        }
    }

    contentItem: Item {
        Rectangle {
            id: frame

            x: 8
            y: Math.round((parent.height - 4 - height) / 2)
            width: 96
            height: 54
            radius: Style.smallCorner
            color: Style.background
            visible: row.hasRoomForPicture && !artwork.isThere

            // A film that shows no picture of itself, such as a protected one.
            Image {
                anchors.centerIn: parent
                visible: artwork.status === Image.Ready && !artwork.isThere
                source: "qrc:/images/film.svg"
                sourceSize: Qt.size(28, 28)
            }
        }
        SharpImage {
            id: artwork

            // The answer that there is none arrives as a picture of no size.
            readonly property bool isThere: status === Image.Ready && implicitWidth > 0

            anchors.fill: frame
            visible: row.hasRoomForPicture
            asynchronous: true
            source: row.content.picture
            fillMode: Image.PreserveAspectCrop
        }
        Column {
            anchors.left: row.hasRoomForPicture ? frame.right : parent.left
            anchors.leftMargin: 12
            anchors.right: parent.right
            anchors.rightMargin: row.table.gutter + 12
            y: Math.round((parent.height - 4 - height) / 2)
            spacing: title.isOneLine ? 4 : 2

            RowTitle {
                id: title

                width: parent.width
                title: row.content.title
                color: row.content.titleColor
            }
            Text {
                width: parent.width
                text: row.content.detail
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: row.content.detailColor
                font.pixelSize: Style.captionSize
            }
        }
    }
}
