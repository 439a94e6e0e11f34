import QtQuick
import "qrc:/quillop/screen"

// How far something is.
Item {
    id: bar

    // Assistive technology asks for the value and the ends of its range by these names.
    required property real value
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1
    property string name: ""
    property string description: ""

    implicitHeight: 6

    Accessible.role: Accessible.ProgressBar
    Accessible.name: name
    Accessible.description: description
    Accessible.readOnly: true
    Accessible.ignored: !enabled || name === ""

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Style.control
    }
    Rectangle {
        width: Math.min(parent.width, Math.max(bar.value > 0 ? height : 0, Math.round(bar.value * parent.width)))
        height: parent.height
        radius: height / 2
        color: Style.accent
    }
}
