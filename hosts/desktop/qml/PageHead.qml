import QtQuick

// The title of a page, and the button that leaves it.
Item {
    id: head

    required property string title
    required property string leaveTitle
    signal leaving()

    height: 64

    Text {
        anchors { left: parent.left; right: leave.left; verticalCenter: parent.verticalCenter }
        anchors { leftMargin: 24; rightMargin: 12 }
        text: head.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: "#FFFFFF"
        font { pixelSize: 22; weight: Font.DemiBold }

        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.ignored: !enabled
    }
    PageButton {
        id: leave

        anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
        title: head.leaveTitle
        onClicked: head.leaving()
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: "#3A454C"
    }
}
