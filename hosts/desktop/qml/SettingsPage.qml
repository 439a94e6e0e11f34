import QtQuick
import "qrc:/quillop/screen"

// The app's page in the system's settings: a card on large windows, the whole window on small ones.
Veil {
    id: settings

    readonly property bool isLarge: width >= 640 && height >= 520
    property bool isChoosing: false
    property bool isListing: false
    readonly property bool isInside: isChoosing || isListing

    function back() {
        if (!isInside)
            node.close()
        isChoosing = false
        isListing = false
    }

    function chooseFolder() {
        if (node.leavesFolderQuestion())
            return
        node.chooser.goHome()
        isChoosing = true
    }

    Connections {
        target: settings.node
        function onEscapePressed() { settings.back() }
    }

    Rectangle {
        anchors.centerIn: parent
        width: settings.isLarge ? Math.min(600 * Style.textScale, parent.width - 64) : parent.width
        height: settings.isLarge ? Math.min(parent.height - 64, Math.max(480, content.wholeHeight)) : parent.height
        radius: settings.isLarge ? Style.cardCorner : 0
        color: Style.page
        border { width: settings.isLarge ? 1 : 0; color: Style.outline }

        Settings {
            id: content

            anchors.fill: parent
            node: settings.node
            visible: !settings.isInside
            enabled: visible
            focus: visible
            onAddRequested: settings.chooseFolder()
            onUnreadableRequested: settings.isListing = true
        }
        Loader {
            anchors.fill: parent
            active: settings.isChoosing
            focus: active
            sourceComponent: FolderChooser {
                chooser: settings.node.chooser
                focus: true
                onCancelled: settings.isChoosing = false
                onChosen: {
                    settings.node.addChosenFolder()
                    settings.isChoosing = false
                }
            }
        }
        Loader {
            anchors.fill: parent
            active: settings.isListing
            focus: active
            sourceComponent: UnreadableFiles {
                files: settings.node.unreadableFiles
                count: settings.node.unreadable
                unlisted: settings.node.unlisted
                focus: true
                onLeaving: settings.isListing = false
            }
        }
    }
}
