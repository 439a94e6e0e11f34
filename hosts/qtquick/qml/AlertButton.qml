import QtQuick
import QtQuick.Templates as T

// A button of an alert.
T.AbstractButton {
    id: button

    required property string title
    required property bool isPreferred
    readonly property real titleWidth: label.implicitWidth

    height: 48
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.ignored: !enabled
    Accessible.onPressAction: clicked()

    Keys.onPressed: event => {
        if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
            return
        clicked()
        event.accepted = true
    }

    background: Rectangle {
        radius: 12
        color: button.isPreferred ? "#3DA9FC" : "#39444B"

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: "#FFFFFF"
            opacity: button.down ? 0.25 : 0.12
            visible: button.down || button.hovered
        }
    }
    contentItem: Item {
        Text {
            id: label

            anchors.fill: parent
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: button.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: button.isPreferred ? "#0B0E10" : "#FFFFFF"
            font { pixelSize: 17; weight: Font.DemiBold }
        }
    }

    FocusRing {
        visible: button.visualFocus
        radius: 12
    }
}
