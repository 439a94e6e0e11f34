import QtQuick
import QtQuick.Templates as T

// A list of rows, of which only those in sight exist.
ListView {
    id: list

    required property QtObject node
    readonly property bool isLong: contentHeight > 4 * height
    // What the rows leave free for the scroll bar, whether there is one or not: the margin beside the list.
    readonly property real gutter: isLong ? 20 : 12
    // As high as the app has it, but never too low for a title in two lines with a detail under it.
    readonly property real rowHeight: Math.max(node.rowHeight, 2 * (Style.bodySize + 3) + Style.captionSize + 16)
    // Whether the keyboard led here, so that it is worth showing where it is.
    property bool showsFocus: false

    enabled: node.shown
    visible: node.shown
    clip: true
    model: node.rows
    cacheBuffer: 0
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    activeFocusOnTab: true
    highlightMoveDuration: 0
    highlightFollowsCurrentItem: true

    Accessible.role: Accessible.List
    Accessible.name: node.accessibleName
    Accessible.description: count > 0 ? node.countText : node.emptyText
    Accessible.focusable: true
    Accessible.ignored: !enabled

    onContentYChanged: node.scrollTo((contentY - originY) * node.rowHeight / rowHeight)
    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0

    function goTo(row) {
        currentIndex = Math.max(0, Math.min(count - 1, row))
        positionViewAtIndex(currentIndex, ListView.Contain)
    }

    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(height / rowHeight) - 1)
        showsFocus = true
        switch (event.key) {
        case Qt.Key_PageDown: goTo(currentIndex + page); break
        case Qt.Key_PageUp: goTo(currentIndex - page); break
        case Qt.Key_Home: goTo(0); break
        case Qt.Key_End: goTo(count - 1); break
        case Qt.Key_Space:
        case Qt.Key_Return:
        case Qt.Key_Enter:
            // A space may be part of a title.
            if (!event.isAutoRepeat && !(typing.text !== "" && typing.take(event)))
                node.select(currentIndex)
            break
        default:
            if (!typing.take(event))
                return
        }
        event.accepted = true
    }

    delegate: TableRow {
        table: list
    }

    Image {
        parent: list
        anchors { horizontalCenter: nothing.horizontalCenter; bottom: nothing.top; bottomMargin: 2 * Style.space }
        visible: nothing.visible && list.height > nothing.height + 2 * (height + 4 * Style.space)
        source: "qrc:/images/film.svg"
        sourceSize: Qt.size(56, 56)
    }
    Text {
        id: nothing

        parent: list
        anchors.centerIn: parent
        width: Math.min(360 * Style.textScale, parent.width - 32)
        visible: text !== ""
        text: list.node.emptyText
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        lineHeight: Style.lineHeight
        color: Style.dimText
        font.pixelSize: Style.bodySize

        Accessible.role: Accessible.StaticText
        Accessible.name: text
        Accessible.ignored: !enabled || text === ""
    }

    TypeAhead {
        id: typing

        parent: list
        anchors.fill: parent
        z: 2
        table: list
    }
    Loader {
        parent: list
        z: 1
        active: list.isLong
        sourceComponent: FastScroller { table: list }
    }
    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        width: 28
        visible: size < 1
        interactive: false
        minimumSize: Math.min(1, 48 / Math.max(1, height))
        padding: 4

        Accessible.name: "Scroll bar"
        Accessible.ignored: !enabled || !visible

        contentItem: Item {
            Rectangle {
                anchors.right: parent.right
                visible: !list.isLong
                width: 5
                height: parent.height
                radius: width / 2
                color: Style.mark
            }
        }
    }
}
