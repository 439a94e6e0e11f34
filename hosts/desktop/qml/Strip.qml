import QtQuick
import QtQuick.Templates as T
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
    readonly property bool isLandscape: width > height
    readonly property real roomBesideHint: (isLandscape ? Math.min(width / 2, width - hintWidth)
                                                        : width - hintWidth) - 16
    readonly property bool isUnderBar: roomBesideHint >= 280

    NumberAnimation on opacity {
        running: page.moves
        from: 0
        to: 1
        duration: 200
        easing.type: Easing.OutCubic
    }

    Rectangle {
        id: strip

        x: page.width - width - 8
        // Where there is no room beside the hint, at the upper edge of the second film, half way down.
        y: (page.isUnderBar ? page.topBar : Math.round(page.height / 2) + page.topBar / 2) + 4
        width: page.isUnderBar ? Math.min(page.roomBesideHint, 640) : page.width - 16
        height: Math.max(Style.controlHeight, page.isOneLine ? 0 : page.contentHeight + 2 * Style.space)
        radius: Style.controlCorner
        color: Style.bar
        border { width: 1; color: Style.outline }

        Item {
            id: room

            anchors { left: parent.left; right: close.left; top: parent.top; bottom: parent.bottom }
            anchors { leftMargin: 2 * Style.space; rightMargin: Style.space / 2 }
        }
        T.AbstractButton {
            id: close

            anchors { right: parent.right; top: parent.top }
            width: 48
            height: parent.height
            focusPolicy: Qt.TabFocus
            activeFocusOnTab: true
            hoverEnabled: true

            Accessible.role: Accessible.Button
            Accessible.name: page.closeTitle
            Accessible.ignored: !enabled
            Accessible.onPressAction: clicked()

            Keys.onPressed: event => {
                if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
                    return
                clicked()
                event.accepted = true
            }

            onClicked: page.closed()

            background: Item {
                Glow {
                    button: close
                    anchors.margins: Style.space / 2
                    radius: Style.smallCorner
                }
            }
            contentItem: Item {
                Image {
                    anchors.centerIn: parent
                    source: "qrc:/images/close.svg"
                    sourceSize: Qt.size(24, 24)
                }
            }

            FocusRing {
                visible: close.visualFocus
                inset: 3
                radius: Style.smallCorner + 1
            }
        }
    }
}
