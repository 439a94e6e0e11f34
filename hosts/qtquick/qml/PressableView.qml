import QtQuick
import QtQuick.Templates as T

// A view with a name: a film. It can be tapped, and pressed by key or by assistive technology.
T.AbstractButton {
    id: view

    required property QtObject node

    enabled: node.shown
    visible: node.shown
    clip: node.clips
    // Until a tap means something there is nothing to come here for.
    focusPolicy: node.tappable ? Qt.StrongFocus : Qt.NoFocus

    Accessible.role: Accessible.Button
    Accessible.name: node.accessibleName
    Accessible.focusable: node.tappable
    Accessible.ignored: !enabled
    Accessible.onPressAction: {
        if (node.tappable)
            view.forceActiveFocus(Qt.OtherFocusReason)
        node.tap()
    }

    onClicked: node.tapAt(Qt.point(pressX, pressY))
    Keys.onPressed: event => {
        if (![Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter, Qt.Key_Select].includes(event.key))
            return
        if (!event.isAutoRepeat)
            node.tap()
        event.accepted = true
    }

    background: Rectangle {
        color: view.node.color
        radius: view.node.cornerRadius
        border { width: view.node.borderWidth; color: view.node.borderColor }
    }

    FocusRing {
        visible: view.visualFocus
        inset: 2
        radius: 8
    }
}
