import QtQuick
import "qrc:/quillop/screen"

// Between a row of a group and the one above it.
Rectangle {
    anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: 2 * Style.space }
    height: 1
    color: Style.hairline
}
