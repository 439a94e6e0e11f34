import QtQuick
import "qrc:/quillop/screen"

// Asks whether the app may read the media library.
Veil {
    id: prompt

    Rectangle {
        id: card

        anchors.centerIn: parent
        width: Math.min(prompt.width - 32, 420)
        height: column.height + 48
        radius: 16
        color: "#232B30"
        border { width: 1; color: "#3A454C" }
        // The question is read out first. No answer has the focus before somebody moves it there, so that a key that
        // was meant for the app answers nothing.
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: question.text
        Accessible.description: reason.text
        Accessible.focusable: true
        Accessible.ignored: !enabled

        Column {
            id: column

            x: 24
            y: 24
            width: parent.width - 48
            spacing: 12

            Text {
                id: question

                width: parent.width
                text: "\"Quillop\" would like to access your media library"
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: "#FFFFFF"
                font { pixelSize: 20; weight: Font.DemiBold }
            }
            Text {
                id: reason

                width: parent.width
                text: "It lists the videos in your videos folder, so that you can choose two of them to play. "
                      + "Nothing leaves this device."
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                lineHeight: 1.15
                color: "#C6CED3"
                font.pixelSize: 17
            }
            Flow {
                id: buttons

                readonly property bool isSideBySide:
                    Math.max(deny.titleWidth, allow.titleWidth) < (width - spacing) / 2 - 24
                readonly property real buttonWidth: isSideBySide ? (width - spacing) / 2 : width

                width: parent.width
                topPadding: 8
                spacing: 8

                AlertButton {
                    id: deny

                    width: buttons.buttonWidth
                    title: "Don't Allow"
                    isPreferred: false
                    KeyNavigation.right: allow
                    onClicked: prompt.node.deny()
                }
                AlertButton {
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
}
