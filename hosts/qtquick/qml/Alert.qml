import QtQuick

// A short message with buttons.
FocusScope {
    id: box

    required property QtObject alert

    focus: true

    Card {
        id: card

        Accessible.role: Accessible.Dialog
        Accessible.name: box.alert.title !== "" ? box.alert.title : box.alert.message
        Accessible.description: box.alert.title !== "" ? box.alert.message : ""
        Accessible.ignored: !enabled

        Text {
            width: parent.width
            visible: text !== ""
            text: box.alert.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.text
            font { pixelSize: Style.titleSize; weight: Font.DemiBold }
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: box.alert.message
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            lineHeight: Style.lineHeight
            color: Style.text
            font.pixelSize: Style.bodySize
        }

        answers: Flow {
            id: answers

            readonly property bool isSideBySide: box.alert.actions.length === 2 && buttons.widestTitle < half - 24
            readonly property real half: (width - spacing) / 2

            width: card.contentWidth
            spacing: Style.space

            Repeater {
                id: buttons

                readonly property real widestTitle: {
                    let widest = 0
                    for (let place = 0; place < count; ++place)
                        widest = Math.max(widest, itemAt(place) ? itemAt(place).titleWidth : 0)
                    return widest
                }

                model: box.alert.actions

                TitleButton {
                    required property int index
                    required property string modelData

                    width: answers.isSideBySide ? answers.half : answers.width
                    title: modelData
                    isPreferred: index === box.alert.preferred
                    focus: isPreferred
                    onClicked: box.alert.press(index)
                }
            }
        }
    }
}
