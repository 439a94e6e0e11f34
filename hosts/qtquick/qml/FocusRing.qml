import QtQuick

// Shows where the keyboard is. Two rings, so that one of them stands out on any background.
Item {
    id: ring

    property real radius: 10
    property real inset: 0

    anchors.fill: parent
    anchors.margins: inset
    z: 10

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        radius: ring.radius
        border { width: 4; color: Style.background }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        color: "transparent"
        radius: ring.radius - 1
        border { width: 2; color: Style.text }
    }
    // In high contrast everything has a white edge.
    Rectangle {
        anchors.fill: parent
        visible: contrast.high
        color: "transparent"
        radius: ring.radius
        border { width: 5; color: Style.focus }
    }
}
