import QtQuick
import QtQuick.Templates as T

// What lies over a button under the pointer and under the finger. It comes at once and fades away.
Rectangle {
    id: glow

    required property T.AbstractButton button

    anchors.fill: parent
    color: Style.glow
    opacity: button.down ? Style.pressOpacity : button.hovered ? Style.hoverOpacity : 0
    visible: opacity > 0
}
