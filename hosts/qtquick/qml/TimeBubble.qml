import QtQuick
import QtQuick.Templates as T

// The time that the finger on a slider has come to, or that the pointer over it would choose.
Rectangle {
    id: bubble

    required property T.Slider control
    required property HoverHandler pointer
    readonly property real place: control.pressed ? control.handle.x + control.handle.width / 2
                                                  : pointer.point.position.x

    visible: control.node.showsTime && (control.pressed || pointer.hovered)
    // Never beyond the slider's ends.
    x: Math.round(Math.max(0, Math.min(control.width - width, place - width / 2)))
    y: control.handle.y - height - 12
    width: Math.ceil(time.implicitWidth) + 3 * Style.space
    height: Math.ceil(time.implicitHeight) + 2 * Style.space
    radius: Style.controlCorner
    color: control.pressed ? control.node.tint : Style.control

    Text {
        id: time

        readonly property real chosen: bubble.control.valueAt(bubble.control.partBefore(bubble.place))

        anchors.centerIn: parent
        text: bubble.control.pressed ? bubble.control.node.elapsed : bubble.control.node.clockAt(chosen)
        color: bubble.control.pressed ? Style.accentText : Style.text
        font { pixelSize: Style.bodySize; weight: Font.DemiBold }
    }
}
