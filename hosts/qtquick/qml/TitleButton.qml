import QtQuick

// A button with a title. One that is too long for it is written smaller.
PressButton {
    id: button

    required property string title
    required property bool isPreferred
    readonly property real titleWidth: Math.ceil(measure.advanceWidth)

    name: title
    height: Math.max(Style.controlHeight, label.font.pixelSize + 3 * Style.space)

    TextMetrics {
        id: measure

        font: label.font
        text: button.title
    }

    background: Rectangle {
        radius: Style.controlCorner
        color: button.isPreferred ? Style.accent : Style.control

        Glow {
            button: button
            radius: parent.radius
        }
    }
    contentItem: Item {
        Text {
            id: label

            anchors { fill: parent; leftMargin: Style.space; rightMargin: Style.space }
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: button.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 15
            color: button.isPreferred ? Style.accentText : Style.text
            font { pixelSize: Style.bodySize; weight: Font.DemiBold }
        }
    }

    FocusRing {
        visible: button.visualFocus
        radius: Style.controlCorner
    }
}
