import QtQuick
import QtQuick.Templates as T
import "qrc:/quillop/screen"

// The menu of the window, below the bar at the top.
Veil {
    id: page

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onClicked: page.node.close()
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 60
        width: Math.min(parent.width - 4 * Style.space, 300 * Style.placeScale)
        height: entries.height + 2 * Style.space
        radius: Style.cardCorner
        color: Style.card
        border { width: 1; color: Style.outline }

        Accessible.role: Accessible.PopupMenu
        Accessible.name: "Quillop menu"
        Accessible.ignored: !enabled

        Column {
            id: entries

            x: Style.space
            y: Style.space
            width: parent.width - 2 * Style.space

            Repeater {
                model: page.node.titles

                T.MenuItem {
                    id: entry

                    required property int index
                    required property string modelData

                    width: entries.width
                    height: Math.max(52, label.implicitHeight + 2 * Style.space)
                    hoverEnabled: true
                    // The first one has the focus as soon as there is a menu.
                    focus: index === 0

                    Accessible.role: Accessible.MenuItem
                    Accessible.name: modelData
                    Accessible.ignored: !enabled
                    Accessible.onPressAction: clicked()

                    function step(by) {
                        nextItemInFocusChain(by).forceActiveFocus(by ? Qt.TabFocusReason : Qt.BacktabFocusReason)
                    }

                    onClicked: page.node.choose(index)
                    Keys.onPressed: event => {
                        const isChoice = (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                                         && !event.isAutoRepeat
                        if (event.key === Qt.Key_Down)
                            step(true)
                        else if (event.key === Qt.Key_Up)
                            step(false)
                        else if (isChoice)
                            clicked()
                        else
                            return
                        event.accepted = true
                    }

                    background: Item {
                        Glow {
                            button: entry
                            radius: Style.smallCorner
                        }
                    }
                    contentItem: Item {
                        Text {
                            id: label

                            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                            anchors { leftMargin: 2 * Style.space; rightMargin: 2 * Style.space }
                            text: entry.modelData
                            textFormat: Text.PlainText
                            wrapMode: Text.Wrap
                            color: Style.text
                            font.pixelSize: Style.bodySize
                        }
                    }

                    FocusRing {
                        visible: entry.visualFocus
                        radius: Style.smallCorner
                    }
                }
            }
        }
    }
}
