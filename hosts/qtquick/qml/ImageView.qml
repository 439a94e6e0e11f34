import QtQuick
import QtQuick.Window

// A view that shows a picture.
View {
    id: view

    Accessible.role: Accessible.Graphic
    Accessible.name: node.accessibleName
    Accessible.ignored: !enabled || node.accessibleName === "" || !node.inSight

    Image {
        anchors.fill: parent
        source: view.node.picture
        fillMode: view.node.fillMode
        // Drawings are made at the very size at which they are shown.
        sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio), Math.round(height * Screen.devicePixelRatio))
    }
}
