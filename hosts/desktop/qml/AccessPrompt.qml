import QtQuick
import "qrc:/quillop/screen"

// Asks whether the app may read the media library.
Veil {
    id: prompt

    Card {
        id: card

        largestWidth: 420
        // The question is read out first. No answer has the focus before somebody moves it there, so that a key that
        // was meant for the app answers nothing.
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: question.text
        Accessible.description: reason.text
        Accessible.focusable: true
        Accessible.ignored: !enabled

        Text {
            id: question

            width: parent.width
            text: "\"Quillop\" would like to access your media library"
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.text
            font { pixelSize: Style.titleSize; weight: Font.DemiBold }
        }
        Text {
            id: reason

            width: parent.width
            text: "It lists the videos in your videos folder, so that you can choose two of them to play. "
                  + "Nothing leaves this device."
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            lineHeight: Style.lineHeight
            color: Style.secondaryText
            font.pixelSize: Style.bodySize
        }

        answers: Flow {
            id: buttons

            readonly property real half: (width - spacing) / 2
            readonly property bool isSideBySide: Math.max(deny.titleWidth, allow.titleWidth) < half - 24
            readonly property real buttonWidth: isSideBySide ? half : width

            width: card.contentWidth
            spacing: Style.space

            TitleButton {
                id: deny

                width: buttons.buttonWidth
                title: "Don't Allow"
                isPreferred: false
                KeyNavigation.right: allow
                onClicked: prompt.node.deny()
            }
            TitleButton {
                id: allow

                width: buttons.buttonWidth
                title: "Allow"
                isPreferred: true
                KeyNavigation.left: deny
                onClicked: prompt.node.allow()
            }
        }
    }
}
