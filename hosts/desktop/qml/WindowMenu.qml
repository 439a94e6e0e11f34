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
        width: Math.min(parent.width - 32, 300)
        height: entries.height + 16
        radius: 16
        color: "#232B30"
        border { width: 1; color: "#3A454C" }

        Accessible.role: Accessible.PopupMenu
        Accessible.name: "Quillop menu"
        Accessible.ignored: !enabled

        Column {
            id: entries

            x: 8
            y: 8
            width: parent.width - 16

            Repeater {
                model: page.node.titles

                T.MenuItem {
                    id: entry

                    required property int index
                    required property string modelData

                    width: entries.width
                    height: Math.max(52, label.implicitHeight + 16)
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

                    background: Rectangle {
                        radius: 10
                        color: "#FFFFFF"
                        opacity: entry.down ? 0.12 : entry.hovered ? 0.06 : 0
                    }
                    contentItem: Item {
                        Text {
                            id: label

                            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                            anchors { leftMargin: 16; rightMargin: 16 }
                            text: entry.modelData
                            textFormat: Text.PlainText
                            wrapMode: Text.Wrap
                            color: "#FFFFFF"
                            font.pixelSize: 17
                        }
                    }

                    FocusRing {
                        visible: entry.visualFocus
                        radius: 10
                    }
                }
            }
        }
    }
}
