import QtQuick

// A plain view. Hidden ones take no input from the moment on in which they are hidden, whatever is still to be seen.
Rectangle {
    id: view

    required property QtObject node

    color: node.color
    radius: node.cornerRadius
    border { width: node.borderWidth; color: node.borderColor }
    clip: node.clips
    enabled: node.shown
    opacity: node.shown ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        enabled: view.node.fades
        NumberAnimation { duration: Style.smoothly; easing.type: Easing.OutCubic }
    }
}
