import QtQuick

// A view that shows a picture.
View {
    id: view

    Accessible.role: Accessible.Graphic
    Accessible.name: node.accessibleName
    Accessible.ignored: !enabled || node.accessibleName === "" || !node.inSight

    SharpImage {
        anchors.fill: parent
        source: view.node.picture
        fillMode: view.node.fillMode
    }
}
