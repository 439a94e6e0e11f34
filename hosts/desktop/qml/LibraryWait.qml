import QtQuick
import "qrc:/quillop/screen"

// Tells how far the media library is, to somebody who waits for it.
Veil {
    id: wait

    readonly property string title: "Looking through your videos"

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(wait.width - 32, 460)
        height: column.height + 48
        radius: 16
        color: "#232B30"
        border { width: 1; color: "#3A454C" }
        // As with a question, no button has the focus before somebody moves it there: a key that was meant for the
        // app cancels nothing.
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: wait.title
        Accessible.description: wait.node.count
        Accessible.focusable: true
        Accessible.ignored: !enabled

        Column {
            id: column

            x: 24
            y: 24
            width: parent.width - 48
            spacing: 16

            Text {
                width: parent.width
                text: wait.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: "#FFFFFF"
                font { pixelSize: 20; weight: Font.DemiBold }
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
                spacing: 2

                Text {
                    width: parent.width
                    text: wait.node.count
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    color: "#FFFFFF"
                    font.pixelSize: 17
                }
                Text {
                    width: parent.width
                    text: wait.node.remaining !== "" ? wait.node.remaining : " "
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    color: "#C6CED3"
                    font.pixelSize: 16
                }
            }
            // The room of both buttons is kept from the beginning, so that none moves away under a finger when the
            // other one comes.
            Item {
                id: buttons

                readonly property bool isSideBySide: width >= 360

                width: parent.width
                height: isSideBySide ? 48 : 104

                AlertButton {
                    id: cancel

                    y: parent.height - height
                    width: buttons.isSideBySide ? (parent.width - 8) / 2 : parent.width
                    title: "Cancel"
                    isPreferred: false
                    KeyNavigation.right: goOn
                    onClicked: wait.node.cancel()
                }
                AlertButton {
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
}
