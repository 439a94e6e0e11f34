import QtQuick

// The app's page in the system's settings: a card on large windows, the whole window on small ones.
Veil {
    id: settings

    readonly property bool isLarge: width >= 640 && height >= 520
    property bool isChoosing: false

    function back() {
        if (isChoosing)
            isChoosing = false
        else
            node.close()
    }

    function chooseFolder() {
        node.chooser.goHome()
        isChoosing = true
    }

    Connections {
        target: settings.node
        function onEscapePressed() { settings.back() }
    }

    Rectangle {
        anchors.centerIn: parent
        width: settings.isLarge ? 600 : parent.width
        height: settings.isLarge ? Math.min(parent.height - 64, Math.max(480, content.wholeHeight)) : parent.height
        radius: settings.isLarge ? 16 : 0
        color: "#161B1E"
        border { width: settings.isLarge ? 1 : 0; color: "#3A454C" }

        Settings {
            id: content

            anchors.fill: parent
            node: settings.node
            visible: !settings.isChoosing
            enabled: visible
            focus: visible
            onAddRequested: settings.chooseFolder()
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
    }
}
