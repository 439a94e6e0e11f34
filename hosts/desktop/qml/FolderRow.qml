import QtQuick
import "qrc:/quillop/screen"

// A folder of the library.
Item {
    id: row

    required property string path
    property string note: ""
    property bool isFirst: false
    property bool isRemovable: false
    signal removed()

    height: Math.max(8 * Style.space, texts.height + 2 * Style.space)

    Accessible.role: Accessible.ListItem
    Accessible.name: note !== "" ? path + ", " + note : path
    Accessible.ignored: !enabled

    Rectangle {
        anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: 2 * Style.space }
        height: 1
        visible: !row.isFirst
        color: Style.hairline
    }
    Column {
        id: texts

        anchors { left: parent.left; right: remove.left; verticalCenter: parent.verticalCenter }
        anchors { leftMargin: 2 * Style.space; rightMargin: 2 * Style.space }
        spacing: Style.space / 4

        Text {
            width: parent.width
            text: row.path
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Style.text
            font.pixelSize: Style.bodySize
        }
        Text {
            width: parent.width
            visible: row.note !== ""
            text: row.note
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.dimText
            font.pixelSize: Style.captionSize
        }
    }
    PageButton {
        id: remove

        anchors { right: parent.right; rightMargin: row.isRemovable ? Style.space : 0; verticalCenter: parent.verticalCenter }
        width: row.isRemovable ? Math.min(titleWidth + 4 * Style.space, row.width / 2) : 0
        visible: row.isRemovable
        enabled: visible
        title: "Remove"
        subject: row.path
        onClicked: row.removed()
    }
}
