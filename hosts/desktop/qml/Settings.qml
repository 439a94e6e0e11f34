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
        leaveTitle: "Close"
        onLeaving: page.node.close()
    }
    Flickable {
        id: flickable

        anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: parent.bottom }
        contentHeight: column.height + 2 * Style.margin
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: column

            x: Style.margin
            y: Style.margin
            width: flickable.width - 2 * Style.margin
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
                FolderRow {
                    width: parent.width
                    path: page.node.videosFolder
                    note: "Your videos folder"
                    isFirst: true
                }
                Repeater {
                    model: page.node.addedFolders

                    FolderRow {
                        required property int index
                        required property string modelData

                        width: column.width
                        path: modelData
                        isRemovable: true
                        onRemoved: page.node.removeFolder(index)
                    }
                }
            }
            PageButton {
                width: Math.min(parent.width, titleWidth + 5 * Style.space)
                title: "Add a folder"
                onClicked: page.addRequested()
            }

            SettingsTitle { text: "What the library holds" }
            SettingsText { text: page.node.contents }
            Column {
                width: parent.width
                visible: page.node.working
                enabled: page.node.working
                spacing: 8

                ProgressBar {
                    width: parent.width
                    value: page.node.fraction
                    name: "Looking through your videos"
                    description: page.node.progress
                }
                SettingsText { text: page.node.progress }
            }
            Flow {
                width: parent.width
                spacing: Style.space

                PageButton {
                    width: Math.min(parent.width, titleWidth + 5 * Style.space)
                    title: "Rescan"
                    enabled: page.node.allowed
                    onClicked: page.node.rescan()
                }
                PageButton {
                    width: Math.min(parent.width, titleWidth + 5 * Style.space)
                    visible: page.node.unreadable !== ""
                    enabled: visible
                    title: page.node.unreadable
                    onClicked: page.unreadableRequested()
                }
            }

            SettingsTitle { text: "About" }
            SettingsText { text: "Quillop " + page.node.version }
        }
    }
    ScrollMark {
        anchors.right: parent.right
        flickable: flickable
    }
}
