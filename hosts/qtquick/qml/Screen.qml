import QtQuick

// One screen, and what lies between it and the screens beneath.
FocusScope {
    id: screen

    required property QtObject node
    property alias card: card
    property real progress: node.present ? 1 : 0

    enabled: node.active
    visible: !node.covered

    Accessible.role: Accessible.Dialog
    Accessible.name: node.title
    Accessible.ignored: !enabled || node.title === ""

    Behavior on progress {
        id: motion
        enabled: screen.node.moves
        NumberAnimation {
            duration: motion.targetValue > 0 ? screen.node.arrivalTime : screen.node.departureTime
            easing.type: Easing.OutCubic
        }
    }

    Shade {
        anchors.fill: parent
        visible: screen.node.dims && opacity > 0
        opacity: Style.shadeOpacity * screen.progress
    }

    Item {
        id: card

        anchors.fill: parent
        opacity: screen.node.slides ? 1 : screen.progress
        transform: Translate {
            y: screen.node.slides ? Math.round((1 - screen.progress) * (screen.height - screen.node.sheet.y)) : 0
        }

        Rectangle {
            anchors.fill: parent
            visible: screen.node.fills
            color: Style.shade
        }
        // The edge of the sheet, to be told from what is dark behind it.
        Rectangle {
            visible: screen.node.dims && screen.node.sheet.y > 0
            x: screen.node.sheet.x - 1
            y: screen.node.sheet.y - 1
            width: screen.node.sheet.width + 2
            height: screen.node.sheet.height + 2
            radius: Style.cardCorner + 1
            color: Style.outline
        }
        // A sheet that stands on the window's lower edge has no lower corners.
        Rectangle {
            readonly property rect sheet: screen.node.sheet

            visible: screen.node.dims && sheet.height > 0 && sheet.y > 0 && sheet.y + sheet.height >= screen.height
            x: sheet.x
            y: sheet.y + sheet.height - height
            width: sheet.width
            height: 32
            color: screen.node.sheetColor
        }
        Loader {
            anchors.fill: parent
            active: screen.node.alert !== null
            focus: active
            sourceComponent: Alert { alert: screen.node.alert }
        }
    }
}
