import QtQuick
import QtQuick.Templates as T

// A button with a picture, a title, or both side by side.
T.AbstractButton {
    id: button

    required property QtObject node
    readonly property real corner: node.cornerRadius > 0 ? node.cornerRadius : Math.min(12, height / 2)

    enabled: node.shown
    visible: node.shown
    hoverEnabled: true

    // A finger is as large on a small control as on a large one.
    containmentMask: QtObject {
        function contains(point: point): bool { return button.node.isTouchedAt(point) }
    }

    Accessible.role: Accessible.Button
    Accessible.name: node.accessibleName
    Accessible.ignored: !enabled
    // As with a click, the focus goes along: it is where somebody is who comes back from a sheet.
    Accessible.onPressAction: {
        button.forceActiveFocus(Qt.OtherFocusReason)
        node.press()
    }

    onClicked: node.press()
    Keys.onPressed: event => {
        if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
            return
        node.press()
        event.accepted = true
    }

    TextMetrics {
        id: measure

        font: title.font
        text: title.text
    }

    background: Rectangle {
        radius: button.corner
        color: button.down ? button.node.pressedColor : button.node.color
        border { width: button.node.borderWidth; color: button.node.borderColor }

        SharpImage {
            anchors.fill: parent
            source: button.down ? button.node.pressedBackgroundPicture : button.node.backgroundPicture
        }
        Glow {
            button: button
            radius: parent.radius
            visible: opacity > 0 && !(button.down && button.node.showsPress)
        }
    }

    contentItem: Item {
        Row {
            id: face

            anchors.centerIn: parent
            height: parent.height
            spacing: Style.space

            SharpImage {
                id: drawing

                anchors.verticalCenter: parent.verticalCenter
                visible: source != ""
                width: button.node.pictureSize.width
                height: button.node.pictureSize.height
                source: button.node.picture
            }
            // The place is the app's: a text grows in it as far as it goes.
            Text {
                id: title

                readonly property real room: button.width - 2 * Style.space
                                             - (drawing.visible ? drawing.width + face.spacing : 0)

                height: parent.height
                verticalAlignment: Text.AlignVCenter
                visible: text !== ""
                width: Math.min(room, Math.ceil(measure.advanceWidth) + 1)
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 15
                elide: Text.ElideRight
                text: button.down ? button.node.pressedTitle : button.node.title
                textFormat: Text.PlainText
                color: button.down ? button.node.pressedTitleColor : button.node.titleColor
                font { pixelSize: Math.round(17 * Style.placeScale); weight: Font.DemiBold }
            }
        }
    }

    FocusRing {
        visible: button.visualFocus
        radius: button.corner
    }
}
