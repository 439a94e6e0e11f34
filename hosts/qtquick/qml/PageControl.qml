import QtQuick

// A row of dots, one per page. It takes no taps.
View {
    id: control

    Accessible.role: Accessible.StaticText
    Accessible.name: node.accessibleName
    Accessible.ignored: !enabled || node.accessibleName === ""

    Row {
        anchors.centerIn: parent

        Repeater {
            model: control.node.pages

            Item {
                required property int index

                width: control.width / control.node.pages
                height: control.height

                Rectangle {
                    anchors.centerIn: parent
                    width: 8
                    height: 8
                    radius: 4
                    color: parent.index === control.node.page ? control.node.currentTint : control.node.tint
                }
            }
        }
    }
}
