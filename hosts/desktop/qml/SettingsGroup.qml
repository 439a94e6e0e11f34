import QtQuick
import "qrc:/quillop/screen"

// Rows that belong together, on a surface of their own, with hairlines between them.
Rectangle {
    default property alias rows: rows.data

    width: parent.width
    height: rows.height
    radius: Style.controlCorner
    color: Style.group
    border { width: contrast.high ? 1 : 0; color: Style.outline }

    Column {
        id: rows

        width: parent.width
    }
}
