import QtQuick
import QtQuick.Templates as T
import "qrc:/quillop/screen"

// A button that is only a sign. `name` says what it does.
T.AbstractButton {
    id: button

    required property string name
    required property url sign

    width: Style.controlHeight
    height: Style.controlHeight
    focusPolicy: Qt.TabFocus
    activeFocusOnTab: true
    hoverEnabled: true
    opacity: enabled ? 1 : Style.disabledOpacity

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.ignored: !enabled
    Accessible.onPressAction: clicked()

    Keys.onPressed: event => {
        if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
            return
        clicked()
        event.accepted = true
    }

    background: Item {
        Glow {
            button: button
            anchors.margins: Style.space / 2
            radius: Style.smallCorner
        }
    }
    contentItem: Item {
        Image {
            anchors.centerIn: parent
            source: button.sign
            sourceSize: Qt.size(24, 24)
        }
    }

    FocusRing {
        visible: button.visualFocus
        inset: 3
        radius: Style.smallCorner + 1
    }
}
