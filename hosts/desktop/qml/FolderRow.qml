import QtQuick

// A folder of the library.
Item {
    id: row

    required property string path
    property string note: ""
    property bool isRemovable: false
    signal removed()

    height: Math.max(52, texts.height + 8)

    Accessible.role: Accessible.ListItem
    Accessible.name: note !== "" ? path + ", " + note : path
    Accessible.ignored: !enabled

    Column {
        id: texts

        anchors { left: parent.left; right: remove.left; verticalCenter: parent.verticalCenter }
        anchors.rightMargin: 12
        spacing: 2

        Text {
            width: parent.width
            text: row.path
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: "#FFFFFF"
            font.pixelSize: 16
        }
        Text {
            width: parent.width
            visible: row.note !== ""
            text: row.note
            textFormat: Text.PlainText
            color: "#9AA7AE"
            font.pixelSize: 15
        }
    }
    PageButton {
        id: remove

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        width: row.isRemovable ? titleWidth + 40 : 0
        visible: row.isRemovable
        enabled: visible
        title: "Remove"
        subject: row.path
        onClicked: row.removed()
    }
}
