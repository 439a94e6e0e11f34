import QtQuick

// Darkens what lies beneath, which nothing that is done here reaches.
Rectangle {
    color: Style.shade

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }
}
