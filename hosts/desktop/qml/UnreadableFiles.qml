import QtQuick
import "qrc:/quillop/screen"

// The files that could not be read, and why.
FocusScope {
    id: page

    required property QtObject files
    required property string heading
    required property string unlisted
    signal leaving()

    PageHead {
        id: head

        width: parent.width
        title: "Unreadable files"
        isInner: true
        onLeaving: page.leaving()
    }
    ListView {
        id: list

        property real kept: 0
        readonly property bool showsFocus: activeFocus && Window.window.focusReason === Qt.TabFocusReason

        anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: parent.bottom }
        model: page.files
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: page.heading
        Accessible.ignored: !enabled

        function turn(pages) {
            const row = Math.max(1, Math.floor(height / 88) - 1)
            currentIndex = Math.max(0, Math.min(count - 1, currentIndex + pages * row))
        }

        Keys.onPressed: event => {
            const moves = new Map([
                [Qt.Key_PageDown, () => turn(1)], [Qt.Key_PageUp, () => turn(-1)],
                [Qt.Key_Home, () => currentIndex = 0], [Qt.Key_End, () => currentIndex = count - 1]])
            const move = moves.get(event.key)
            if (move === undefined)
                return
            move()
            event.accepted = true
        }

        // Whoever reads in it while the library looks again stays where they are.
        Connections {
            target: page.files
            function onModelAboutToBeReset() { list.kept = list.contentY }
            function onModelReset() {
                const lowest = list.originY + list.contentHeight - list.height
                list.contentY = Math.max(list.originY, Math.min(list.kept, lowest))
            }
        }

        delegate: Item {
            id: row

            required property string name
            required property string folder
            required property string reason

            width: ListView.view.width
            height: texts.height + 4 * Style.space

            Accessible.role: Accessible.ListItem
            Accessible.name: name + ", " + folder + ", " + reason
            Accessible.ignored: !enabled

            Column {
                id: texts

                anchors.verticalCenter: parent.verticalCenter
                x: Style.sideMargin
                width: parent.width - 2 * Style.sideMargin
                spacing: Style.space / 2

                Text {
                    width: parent.width
                    text: row.name
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignLeft
                    elide: Text.ElideMiddle
                    color: Style.text
                    font.pixelSize: Style.bodySize
                }
                Text {
                    width: parent.width
                    text: row.folder
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignLeft
                    elide: Text.ElideMiddle
                    color: Style.dimText
                    font.pixelSize: Style.captionSize
                }
                Text {
                    width: parent.width
                    text: row.reason
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                    color: Style.secondaryText
                    font.pixelSize: Style.captionSize
                }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: Style.sideMargin }
                height: 1
                color: Style.hairline
            }
            FocusRing {
                visible: list.showsFocus && row.ListView.isCurrentItem
                inset: 4
                radius: Style.smallCorner
            }
        }

        header: Text {
            width: ListView.view.width
            height: visible ? implicitHeight : 0
            visible: page.heading !== ""
            topPadding: 2 * Style.space
            bottomPadding: Style.space
            leftPadding: Style.sideMargin
            rightPadding: Style.sideMargin
            text: page.heading
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.secondaryText
            font.pixelSize: Style.captionSize
        }
        footer: Text {
            width: ListView.view.width
            height: visible ? implicitHeight : 0
            visible: page.unlisted !== ""
            padding: Style.sideMargin
            text: page.unlisted
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.secondaryText
            font.pixelSize: Style.captionSize
        }

        Text {
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: Style.sideMargin }
            visible: list.count === 0
            text: "All files could be read."
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.secondaryText
            font.pixelSize: Style.captionSize
        }
    }
    ScrollMark {
        anchors.right: parent.right
        flickable: list
    }
}
