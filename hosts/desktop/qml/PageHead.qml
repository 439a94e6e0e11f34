import QtQuick
import "qrc:/quillop/screen"

// The title of a page, and the button that leaves it. A title that is too long for its place is written smaller.
Item {
    id: head

    required property string title
    required property string leaveTitle
    signal leaving()

    height: Math.max(8 * Style.space, leave.height + 2 * Style.space, 48 * Style.textScale)

    Text {
        anchors { left: parent.left; right: leave.left; top: parent.top; bottom: parent.bottom }
        anchors { leftMargin: Style.margin; rightMargin: 2 * Style.space }
        verticalAlignment: Text.AlignVCenter
        text: head.title
        textFormat: Text.PlainText
        wrapMode: Text.WordWrap
        fontSizeMode: Text.Fit
        minimumPixelSize: 17
        elide: Text.ElideRight
        color: Style.text
        font { pixelSize: Style.titleSize; weight: Font.DemiBold }

        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.ignored: !enabled
    }
    PageButton {
        id: leave

        anchors { right: parent.right; rightMargin: 2 * Style.space; verticalCenter: parent.verticalCenter }
        title: head.leaveTitle
        onClicked: head.leaving()
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Style.outline
    }
}
