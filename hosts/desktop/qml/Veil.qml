import QtQuick
import "qrc:/quillop/screen"

// Lies over the app: darkens it, and lets nothing that is done here reach it.
FocusScope {
    id: veil

    required property QtObject node
    required property bool moves

    focus: true

    NumberAnimation on opacity {
        running: veil.moves
        from: 0
        to: 1
        duration: 200
        easing.type: Easing.OutCubic
    }

    Rectangle {
        anchors.fill: parent
        color: Style.shade
        opacity: Style.shadeOpacity

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
    }
}
