import QtQuick
import "qrc:/quillop/screen"

// What can be seen and changed about the app.
FocusScope {
    id: page

    required property QtObject node
    readonly property real wholeHeight: Math.ceil(head.height + flickable.contentHeight)
    signal addRequested()
    signal unreadableRequested()

    function scroll(distance) {
        const highest = Math.max(0, flickable.contentHeight - flickable.height)
        flickable.contentY = Math.min(highest, Math.max(0, flickable.contentY + distance))
    }

    Keys.onUpPressed: scroll(-60)
    Keys.onDownPressed: scroll(60)

    // What has the focus is in sight.
    function reveal(item) {
        // Before the page has its size nothing is out of sight.
        if (flickable.height <= 0)
            return
        let ancestor = item
        while (ancestor !== null && ancestor !== column)
            ancestor = ancestor.parent
        if (ancestor === null)
            return
        const top = item.mapToItem(flickable.contentItem, 0, 0).y
        const wanted = Math.max(Math.min(flickable.contentY, top - 12), top + item.height + 12 - flickable.height)
        scroll(wanted - flickable.contentY)
    }

    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged() {
            if (page.Window.window.activeFocusItem !== null)
                page.reveal(page.Window.window.activeFocusItem)
        }
    }

    PageHead {
        id: head

        width: parent.width
        title: "Quillop settings"
        onLeaving: page.node.close()
    }
    Flickable {
        id: flickable

        anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: parent.bottom }
        contentHeight: column.height + 2 * Style.sideMargin
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: column

            x: Style.sideMargin
            y: Style.sideMargin
            width: flickable.width - 2 * Style.sideMargin
            spacing: Style.space + Style.space / 2

            SettingsGroup {
                SwitchRow {
                    width: parent.width
                    title: "Access to the media library"
                    on: page.node.allowed
                    enabled: !page.node.restricted
                    focus: true
                    Accessible.description: page.node.explanation
                    onClicked: page.node.allow(!page.node.allowed)
                }
            }
            SettingsText { text: page.node.explanation }

            SettingsTitle { text: "Folders of the media library" }
            SettingsGroup {
                SettingsRow {
                    title: page.node.videosFolder
                    note: "Your videos folder"
                    isFirst: true
                }
                Repeater {
                    model: page.node.addedFolders

                    SettingsRow {
                        id: folder

                        required property int index
                        required property string modelData

                        title: modelData
                        endWidth: remove.width + Style.space / 2

                        IconButton {
                            id: remove

                            anchors.verticalCenter: parent.verticalCenter
                            name: "Remove " + folder.title
                            sign: "qrc:/images/close.svg"
                            onClicked: page.node.removeFolder(folder.index)
                        }
                    }
                }
                ActionRow {
                    title: "Add a folder"
                    sign: "qrc:/images/add.svg"
                    onClicked: page.addRequested()
                }
            }

            SettingsTitle { text: "What the library holds" }
            SettingsGroup {
                SettingsRow {
                    title: page.node.contents
                    isFirst: true
                }
                Item {
                    width: parent.width
                    height: working.height + 2 * Style.space
                    visible: page.node.working
                    enabled: page.node.working

                    Column {
                        id: working

                        x: 2 * Style.space
                        width: parent.width - 4 * Style.space
                        spacing: Style.space

                        ProgressBar {
                            width: parent.width
                            value: page.node.fraction
                            name: "Looking through your videos"
                            description: page.node.progress
                        }
                        SettingsText { text: page.node.progress }
                    }
                }
                ActionRow {
                    visible: page.node.unreadable !== ""
                    enabled: visible
                    title: page.node.unreadable
                    sign: "qrc:/images/forward.svg"
                    leadsOn: true
                    onClicked: page.unreadableRequested()
                }
                ActionRow {
                    title: "Rescan"
                    sign: "qrc:/images/rescan.svg"
                    enabled: page.node.allowed
                    onClicked: page.node.rescan()
                }
            }

            SettingsTitle { text: "About" }
            SettingsGroup {
                SettingsRow {
                    title: "Quillop " + page.node.version
                    isFirst: true
                }
            }
        }
    }
    ScrollMark {
        anchors.right: parent.right
        flickable: flickable
    }
}
