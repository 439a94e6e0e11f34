import QtQuick
import "qrc:/quillop/screen"

// A row of a group that tells something. What lies in it as well, such as a button, is at its end.
Item {
    id: row

    required property string title
    property string note: ""
    property bool isFirst: false
    property real endWidth: 0
    default property alias end: end.data

    width: parent.width
    height: Math.max(7 * Style.space, texts.height + 3 * Style.space)

    Accessible.role: Accessible.StaticText
    Accessible.name: note !== "" ? title + ", " + note : title
    Accessible.ignored: !enabled

    RowLine { visible: !row.isFirst }
    RowText {
        id: texts

        anchors { left: parent.left; right: end.left; verticalCenter: parent.verticalCenter }
        anchors { leftMargin: 2 * Style.space; rightMargin: row.endWidth > 0 ? 0 : 2 * Style.space }
        title: row.title
        note: row.note
    }
    Item {
        id: end

        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: row.endWidth
    }
}
