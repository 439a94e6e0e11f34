import QtQuick
import QtQuick.Templates as T
import "qrc:/quillop/screen"

// A title and a switch. Pressing asks for the other state; the switch shows the one that holds.
T.CheckBox {
    id: row

    required property string title
    required property bool on

    checked: on
    nextCheckState: () => checkState

    implicitHeight: Math.max(56, label.implicitHeight + 16)
    hoverEnabled: true
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: title
    Accessible.checkable: enabled
    Accessible.readOnly: !enabled
    // Out of use it is still read out, with the reason.
    Accessible.ignored: !visible
    Accessible.onPressAction: if (enabled) clicked()
    Accessible.onToggleAction: if (enabled) clicked()

    Keys.onPressed: event => {
        if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
            return
        clicked()
        event.accepted = true
    }

    background: Rectangle {
        radius: 10
        color: "#FFFFFF"
        opacity: row.down ? 0.12 : row.hovered ? 0.06 : 0
    }
    contentItem: Item {
        opacity: row.enabled ? 1 : 0.5

        Text {
            id: label

            anchors { left: parent.left; right: track.left; verticalCenter: parent.verticalCenter }
            anchors { leftMargin: 8; rightMargin: 16 }
            text: row.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: "#FFFFFF"
            font.pixelSize: 17
        }
        Rectangle {
            id: track

            anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
            width: 52
            height: 32
            radius: 16
            color: row.on ? "#3DA9FC" : "#39444B"
            border { width: row.on ? 0 : 2; color: "#8D9AA2" }

            Rectangle {
                x: row.on ? parent.width - width - 4 : 6
                anchors.verticalCenter: parent.verticalCenter
                width: row.on ? 24 : 20
                height: width
                radius: width / 2
                color: row.on ? "#0B0E10" : "#C6CED3"
            }
        }
    }

    FocusRing {
        visible: row.activeFocus
        radius: 10
    }
}
