import QtQuick
import "qrc:/quillop/screen"

// The app's page in the system's settings: a card on large windows, the whole window on small ones.
Veil {
    id: settings

    readonly property bool isLarge: width >= 640 && height >= 520
    property bool isChoosing: false
    property bool isListing: false
    readonly property bool isInside: isChoosing || isListing

    // The focus goes along from page to page, and is shown on the next one to whoever uses the keyboard.
    function enter(page) { page.forceActiveFocus(Window.window.focusReason) }

    function leave() {
        isChoosing = false
        isListing = false
        enter(content)
    }

    function back() {
        if (isInside)
            leave()
        else
            node.close()
    }

    function chooseFolder() {
        if (node.askElsewhere())
            return
        node.chooser.goHome()
        isChoosing = true
        enter(chooser)
    }

    function listFiles() {
        isListing = true
        enter(files)
    }

    Connections {
        target: settings.node
        function onEscapePressed() { settings.back() }
    }

    Rectangle {
        Accessible.role: Accessible.Dialog
        Accessible.name: "Quillop settings"
        Accessible.ignored: !enabled

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
            focus: true
            onAddRequested: settings.chooseFolder()
            onUnreadableRequested: settings.listFiles()
        }
        Loader {
            id: chooser

            anchors.fill: parent
            active: settings.isChoosing
            sourceComponent: FolderChooser {
                chooser: settings.node.chooser
                focus: true
                onCancelled: settings.leave()
                onChosen: {
                    settings.node.addChosenFolder()
                    settings.leave()
                }
            }
        }
        Loader {
            id: files

            anchors.fill: parent
            active: settings.isListing
            sourceComponent: UnreadableFiles {
                files: settings.node.unreadableFiles
                heading: settings.node.unreadable
                unlisted: settings.node.unlisted
                focus: true
                onLeaving: settings.leave()
            }
        }
    }
}
