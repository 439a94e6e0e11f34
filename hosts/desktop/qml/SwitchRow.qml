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

    implicitHeight: Math.max(7 * Style.space, label.height + 3 * Style.space)
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

    background: Item {
        Glow {
            button: row
            radius: Style.controlCorner
        }
    }
    contentItem: Item {
        opacity: row.enabled ? 1 : Style.disabledOpacity

        RowText {
            id: label

            anchors { left: parent.left; right: track.left; verticalCenter: parent.verticalCenter }
            anchors { leftMargin: 2 * Style.space; rightMargin: 2 * Style.space }
            title: row.title
        }
        Rectangle {
            id: track

            anchors { right: parent.right; rightMargin: 2 * Style.space; verticalCenter: parent.verticalCenter }
            width: 52
            height: 32
            radius: 16
            color: row.on ? Style.accent : Style.control
            border { width: row.on ? 0 : 2; color: Style.mark }

            Rectangle {
                x: row.on ? parent.width - width - 4 : 6
                anchors.verticalCenter: parent.verticalCenter
                width: row.on ? 24 : 20
                height: width
                radius: width / 2
                color: row.on ? Style.accentText : Style.secondaryText
            }
        }
    }

    FocusRing {
        visible: row.visualFocus
        radius: Style.controlCorner
    }
}
