import QtQuick
import "qrc:/quillop/screen"

// Tells how far the media library is, to somebody who waits for it.
Veil {
    id: wait

    readonly property string title: "Looking through your videos"

    Card {
        id: card

        largestWidth: 460
        // As with a question, no button has the focus before somebody moves it there: a key that was meant for the
        // app cancels nothing.
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: wait.title
        Accessible.description: wait.node.count
        Accessible.focusable: true
        Accessible.ignored: !enabled

        Text {
            width: parent.width
            text: wait.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.text
            font { pixelSize: Style.titleSize; weight: Font.DemiBold }
        }
        ProgressBar {
            width: parent.width
            value: wait.node.fraction
            name: wait.title
            description: wait.node.remaining !== "" ? wait.node.count + ", " + wait.node.remaining : wait.node.count
        }
        // Two lines from the beginning, so that nothing moves when the remaining time becomes known.
        Column {
            width: parent.width
            spacing: Style.space / 2

            Text {
                width: parent.width
                text: wait.node.count
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Style.text
                font.pixelSize: Style.bodySize
            }
            Text {
                width: parent.width
                text: wait.node.remaining !== "" ? wait.node.remaining : " "
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Style.secondaryText
                font.pixelSize: Style.captionSize
            }
        }

        // The room of both buttons is kept from the beginning, so that none moves away under a finger when the other
        // one comes.
        answers: Item {
            id: buttons

            readonly property bool isSideBySide: width >= 360 * Style.textScale

            width: card.contentWidth
            height: isSideBySide ? cancel.height : 2 * cancel.height + Style.space

            TitleButton {
                id: cancel

                y: parent.height - height
                width: buttons.isSideBySide ? (parent.width - Style.space) / 2 : parent.width
                title: "Cancel"
                isPreferred: false
                KeyNavigation.right: goOn
                onClicked: wait.node.cancel()
            }
            TitleButton {
                id: goOn

                x: parent.width - width
                width: cancel.width
                visible: wait.node.found !== ""
                enabled: visible
                title: "Show " + wait.node.found
                isPreferred: true
                KeyNavigation.left: cancel
                onClicked: wait.node.goOn()
            }
        }
    }
}
