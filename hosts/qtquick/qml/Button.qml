import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

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

    background: Rectangle {
        radius: button.corner
        color: button.down ? button.node.pressedColor : button.node.color
        border { width: button.node.borderWidth; color: button.node.borderColor }

        Image {
            anchors.fill: parent
            source: button.down ? button.node.pressedBackgroundPicture : button.node.backgroundPicture
            sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio),
                                Math.round(height * Screen.devicePixelRatio))
        }
        Rectangle {
            anchors.fill: parent
            radius: button.corner
            color: "#FFFFFF"
            opacity: button.down ? 0.2 : 0.09
            visible: button.down ? !button.node.showsPress : button.hovered
        }
    }

    contentItem: Item {
        Row {
            anchors.centerIn: parent
            height: parent.height
            spacing: 10

            Image {
                anchors.verticalCenter: parent.verticalCenter
                visible: source != ""
                width: button.node.pictureSize.width
                height: button.node.pictureSize.height
                source: button.node.picture
                sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio),
                                    Math.round(height * Screen.devicePixelRatio))
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: button.down ? button.node.pressedTitle : button.node.title
                textFormat: Text.PlainText
                color: button.down ? button.node.pressedTitleColor : button.node.titleColor
                font { pixelSize: 17; weight: Font.DemiBold }
            }
        }
    }

    FocusRing {
        visible: button.visualFocus
        radius: button.corner
    }
}
