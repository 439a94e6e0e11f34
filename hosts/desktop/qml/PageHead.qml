import QtQuick
import "qrc:/quillop/screen"

// The title of a page, and the button that leaves it: at the end of the line for the whole, before the title for a page
// that another one leads to. A title that is too long for its place is written smaller.
Item {
    id: head

    required property string title
    property bool isInner: false
    signal leaving()

    height: Math.max(7 * Style.space, 40 * Style.textScale)

    Text {
        x: head.isInner ? leave.width + Style.space : Style.sideMargin
        width: parent.width - x - (head.isInner ? Style.sideMargin : leave.width + Style.space)
        height: parent.height
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
    IconButton {
        id: leave

        x: head.isInner ? Style.space / 2 : parent.width - width - Style.space / 2
        anchors.verticalCenter: parent.verticalCenter
        name: head.isInner ? "Back" : "Close"
        sign: head.isInner ? "qrc:/images/back.svg" : "qrc:/images/close.svg"
        onClicked: head.leaving()
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Style.outline
    }
}
