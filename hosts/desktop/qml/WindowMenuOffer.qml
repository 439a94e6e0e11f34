import QtQuick

// The menu of the window, for assistive technology, which cannot rest a finger on the bar at the top.
Item {
    id: offer

    required property QtObject node
    required property bool moves

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 120
        height: 56

        Accessible.role: Accessible.ButtonMenu
        Accessible.name: "Quillop menu"
        Accessible.ignored: !enabled
        Accessible.onPressAction: offer.node.open()
    }
}
