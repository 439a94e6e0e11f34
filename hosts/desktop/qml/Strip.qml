import QtQuick
import "qrc:/quillop/screen"

// A strip over the main screen that tells something. It stays clear of what can be touched there: the bar at the top, the
// hint that points at its first button, and the controls at the lower edge of each film.
Item {
    id: page

    required property bool moves
    property bool isOneLine: true
    property string closeTitle
    // Of what is in it, where it takes more than one line.
    property real contentHeight: 0
    readonly property real roomForText: room.width
    default property alias content: room.data
    signal closed()

    readonly property real topBar: 56
    readonly property real hintWidth: 216
    // It is about both films, so it lies across them where there is room for it beside the hint, in the middle.
    readonly property real roomInTheMiddle: width - 2 * (hintWidth + Style.space)
    readonly property bool isInTheMiddle: roomInTheMiddle >= 360
    readonly property real roomBesideHint: isInTheMiddle ? roomInTheMiddle : width - hintWidth - 2 * Style.space
    readonly property bool isUnderBar: roomBesideHint >= 280

    NumberAnimation on opacity {
        running: page.moves
        from: 0
        to: 1
        duration: Style.smoothly
        easing.type: Easing.OutCubic
    }

    Rectangle {
        id: strip

        x: page.isInTheMiddle ? Math.round((page.width - width) / 2) : page.width - width - Style.space
        // Where there is no room beside the hint, at the upper edge of the second film, half way down.
        y: (page.isUnderBar ? page.topBar : Math.round(page.height / 2) + page.topBar / 2) + 4
        width: page.isUnderBar ? Math.min(page.roomBesideHint, 640) : page.width - 2 * Style.space
        height: Math.max(Style.controlHeight, page.isOneLine ? 0 : page.contentHeight + 2 * Style.space)
        radius: Style.controlCorner
        color: Style.bar
        border { width: 1; color: Style.outline }

        Item {
            id: room

            anchors { left: parent.left; right: close.left; top: parent.top; bottom: parent.bottom }
            anchors { leftMargin: 2 * Style.space; rightMargin: Style.space / 2 }
        }
        IconButton {
            id: close

            anchors { right: parent.right; top: parent.top }
            height: parent.height
            name: page.closeTitle
            sign: "qrc:/images/close.svg"
            onClicked: page.closed()
        }
    }
}
