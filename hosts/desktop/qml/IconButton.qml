import QtQuick
import "qrc:/quillop/screen"

// A button that is only a sign.
PressButton {
    id: button

    required property url sign

    width: Style.controlHeight
    height: Style.controlHeight
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : Style.disabledOpacity

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
