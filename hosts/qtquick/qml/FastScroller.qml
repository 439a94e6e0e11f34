import QtQuick

// A thumb by which a long list is dragged through, with a bubble that tells with which letter the titles begin there.
Item {
    id: scroller

    required property ListView table
    readonly property bool isDragged: finger.pressed
    readonly property real wayOfThumb: Math.max(1, table.height - height)
    readonly property real wayOfList: Math.max(1, table.contentHeight - table.height)

    // As much as a finger needs, of which less is painted.
    width: 44
    height: 56
    x: table.width - width
    y: Math.max(0, Math.min(1, (table.contentY - table.originY) / wayOfList)) * wayOfThumb

    function moveTo(place) {
        const part = Math.max(0, Math.min(1, place / wayOfThumb))
        table.contentY = table.originY + part * wayOfList
    }

    MouseArea {
        id: finger

        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => grip = mouse.y
        onPositionChanged: mouse => {
            if (pressed)
                scroller.moveTo(scroller.y + mouse.y - grip)
        }
    }
    Rectangle {
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        width: scroller.isDragged || finger.containsMouse ? 12 : 8
        height: parent.height - 8
        radius: width / 2
        color: scroller.isDragged ? scroller.table.node.tint : Style.mark
    }
    Rectangle {
        id: bubble

        // The row in the middle of the list when the thumb is in the middle, the last one at its end.
        readonly property real place: scroller.table.contentY - scroller.table.originY
                                      + scroller.y / scroller.wayOfThumb * scroller.table.height
        readonly property int row: Math.min(scroller.table.count - 1,
                                            Math.floor(place * scroller.table.count / scroller.table.contentHeight))

        visible: scroller.isDragged && letter.text !== ""
        x: -width - 8
        // Within the list, so that none of it is cut off.
        y: Math.max(-scroller.y, Math.min(scroller.table.height - scroller.y - height, (parent.height - height) / 2))
        width: Math.max(height, letter.implicitWidth + 24)
        height: Math.round(56 * Style.placeScale)
        radius: 16
        color: scroller.table.node.tint

        Text {
            id: letter

            anchors.centerIn: parent
            text: scroller.isDragged ? scroller.table.node.letter(bubble.row) : ""
            textFormat: Text.PlainText
            color: Style.accentText
            font { pixelSize: Math.round(28 * Style.placeScale); weight: Font.DemiBold }
        }
    }
}
