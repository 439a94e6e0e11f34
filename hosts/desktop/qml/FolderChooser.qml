import QtQuick
import QtQuick.Templates as T
import "qrc:/quillop/screen"

// Walks through the folders, to choose one.
FocusScope {
    id: page

    required property QtObject chooser
    signal chosen()
    signal cancelled()

    PageHead {
        id: head

        width: parent.width
        title: "Add a folder"
        isInner: true
        onLeaving: page.cancelled()
    }
    Item {
        id: place

        anchors { left: parent.left; right: parent.right; top: head.bottom }
        height: Math.max(64, up.height + 2 * Style.space, path.implicitHeight + 2 * Style.space)

        PageButton {
            id: up

            x: Style.sideMargin
            anchors.verticalCenter: parent.verticalCenter
            title: "Up"
            enabled: page.chooser.hasParent
            onClicked: page.chooser.goUp()
        }
        Text {
            id: path

            anchors { left: up.right; right: parent.right; verticalCenter: parent.verticalCenter }
            anchors { leftMargin: 2 * Style.space; rightMargin: Style.sideMargin }
            text: page.chooser.shownPath
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.text
            font { pixelSize: Style.bodySize; weight: Font.DemiBold }

            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.ignored: !enabled
        }
    }
    ListView {
        id: list

        readonly property bool showsFocus: activeFocus && Window.window.focusReason === Qt.TabFocusReason

        anchors { left: parent.left; right: parent.right; top: place.bottom; bottom: bar.top }
        model: page.chooser.folders
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        currentIndex: 0
        onModelChanged: currentIndex = 0

        Accessible.role: Accessible.List
        Accessible.name: "Folders"
        Accessible.ignored: !enabled

        Keys.onPressed: event => {
            const enters = [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)
            const leaves = [Qt.Key_Backspace, Qt.Key_Left].includes(event.key)
            if (event.isAutoRepeat || (!enters && !leaves))
                return
            if (leaves)
                page.chooser.goUp()
            else if (currentItem !== null)
                currentItem.clicked()
            event.accepted = true
        }

        delegate: T.AbstractButton {
            id: row

            required property string modelData

            width: ListView.view.width
            height: Math.max(56, label.implicitHeight + 3 * Style.space)
            focusPolicy: Qt.NoFocus
            hoverEnabled: true

            Accessible.role: Accessible.Button
            Accessible.name: modelData
            Accessible.ignored: !enabled
            Accessible.onPressAction: clicked()

            onClicked: page.chooser.enter(modelData)

            background: Item {
                Glow { button: row }
            }
            contentItem: Item {
                Text {
                    id: label

                    anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                    anchors { leftMargin: Style.sideMargin; rightMargin: Style.sideMargin }
                    text: row.modelData
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Style.text
                    font.pixelSize: Style.bodySize
                }
            }

            FocusRing {
                visible: list.showsFocus && row.ListView.isCurrentItem
                inset: 4
                radius: Style.smallCorner
            }
        }

        Text {
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: Style.sideMargin }
            visible: list.count === 0
            text: "There are no folders in here."
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.secondaryText
            font.pixelSize: Style.captionSize
        }
    }
    Item {
        id: bar

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: add.height + 3 * Style.space

        Rectangle {
            width: parent.width
            height: 1
            color: Style.outline
        }
        PageButton {
            id: add

            anchors.centerIn: parent
            width: parent.width - 2 * Style.sideMargin
            title: "Add this folder"
            isPreferred: true
            enabled: page.chooser.canBeChosen
            onClicked: page.chosen()
        }
    }
}
