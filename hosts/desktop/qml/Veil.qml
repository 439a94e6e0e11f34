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
        duration: Style.smoothly
        easing.type: Easing.OutCubic
    }

    Shade {
        anchors.fill: parent
        opacity: Style.shadeOpacity
    }
}
