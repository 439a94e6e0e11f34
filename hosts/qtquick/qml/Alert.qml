import QtQuick

// A short message with buttons.
FocusScope {
    id: box

    required property QtObject alert
    readonly property bool isSideBySide: alert.actions.length === 2 && first.widestTitle < (card.width - 56) / 2 - 24
    readonly property Repeater first: buttons

    focus: true

    Rectangle {
        id: card

        anchors.centerIn: parent
        width: Math.min(box.width - 48, 400)
        height: column.height + 48
        radius: 16
        color: "#232B30"
        border { width: 1; color: "#3A454C" }

        Accessible.role: Accessible.Dialog
        Accessible.name: box.alert.title !== "" ? box.alert.title : box.alert.message
        Accessible.description: box.alert.title !== "" ? box.alert.message : ""
        Accessible.ignored: !enabled

        Column {
            id: column

            x: 24
            y: 24
            width: parent.width - 48
            spacing: 16

            Text {
                width: parent.width
                visible: text !== ""
                text: box.alert.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: "#FFFFFF"
                font { pixelSize: 20; weight: Font.DemiBold }
            }
            Text {
                width: parent.width
                visible: text !== ""
                text: box.alert.message
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                lineHeight: 1.15
                color: "#FFFFFF"
                font.pixelSize: 17
            }
            Flow {
                width: parent.width
                topPadding: 8
                spacing: 8
                layoutDirection: Qt.LeftToRight

                Repeater {
                    id: buttons

                    readonly property real widestTitle: {
                        let widest = 0
                        for (let place = 0; place < count; ++place)
                            widest = Math.max(widest, itemAt(place) ? itemAt(place).titleWidth : 0)
                        return widest
                    }

                    model: box.alert.actions

                    AlertButton {
                        required property int index
                        required property string modelData

                        width: box.isSideBySide ? (column.width - 8) / 2 : column.width
                        title: modelData
                        isPreferred: index === box.alert.preferred
                        focus: isPreferred
                        onClicked: box.alert.press(index)
                    }
                }
            }
        }
    }
}
