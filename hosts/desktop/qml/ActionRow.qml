import QtQuick
import "qrc:/quillop/screen"

// A row of a group that does something when it is pressed, with a sign of what that is. The sign of one that leads
// somewhere is at its end.
PressButton {
    id: row

    required property string title
    required property url sign
    property bool leadsOn: false
    property bool isFirst: false

    name: title
    width: parent.width
    height: Math.max(7 * Style.space, texts.height + 3 * Style.space)

    background: Item {
        RowLine { visible: !row.isFirst }
        Glow {
            button: row
            radius: Style.controlCorner
        }
    }
    contentItem: Item {
        opacity: row.enabled ? 1 : Style.disabledOpacity

        Image {
            id: sign

            x: row.leadsOn ? parent.width - width - 2 * Style.space : 2 * Style.space
            anchors.verticalCenter: parent.verticalCenter
            source: row.sign
            sourceSize: Qt.size(24, 24)
        }
        RowText {
            id: texts

            x: row.leadsOn ? 2 * Style.space : sign.x + sign.width + 1.5 * Style.space
            anchors.verticalCenter: parent.verticalCenter
            width: (row.leadsOn ? sign.x - Style.space : parent.width - 2 * Style.space) - x
            title: row.title
        }
    }

    FocusRing {
        visible: row.visualFocus
        radius: Style.controlCorner
    }
}
