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
        border { width: 4; color: "#0B0E10" }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        color: "transparent"
        radius: ring.radius - 1
        border { width: 2; color: "#FFFFFF" }
    }
    // Where everything has a white edge, the focus has one of its own.
    Rectangle {
        anchors.fill: parent
        visible: contrast.high
        color: "transparent"
        radius: ring.radius
        border { width: 5; color: "#FFE14D" }
    }
}
