import QtQuick

// Jumps to the title whose beginning is typed, and shows what was typed.
Item {
    id: typing

    required property ListView table
    property string text: ""
    property bool isMissing: false

    // Whether the key was part of a title.
    function take(event) {
        const writes = event.text.length > 0 && event.text >= " " && event.text !== "\u007F"
        const commands = event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)
        if (!writes || commands || table.count === 0 || (text === "" && event.text === " "))
            return false
        // A letter alone, and the same one again and again, goes on to the next title that begins with it.
        const repeats = [...text].every(letter => letter === event.text)
        const beginning = repeats ? event.text : text + event.text
        const first = repeats ? (table.currentIndex + 1) % table.count : Math.max(0, table.currentIndex)
        text += event.text
        end.restart()
        if (table.node.search(beginning, first))
            return true
        text = ""
        return false
    }

    Timer {
        id: end

        interval: 1000
        onTriggered: typing.text = ""
    }
    Connections {
        target: typing.table.node
        function onSearched(row) {
            typing.isMissing = row < 0
            if (row >= 0)
                typing.table.goTo(row)
        }
    }

    Rectangle {
        visible: typing.text !== ""
        anchors { bottom: parent.bottom; bottomMargin: 12; horizontalCenter: parent.horizontalCenter }
        width: Math.min(parent.width - 24, words.implicitWidth + 32)
        height: words.implicitHeight + 20
        radius: Style.controlCorner
        color: Style.card
        border { width: 1; color: typing.table.node.tint }

        Text {
            id: words

            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 16 }
            horizontalAlignment: Text.AlignHCenter
            text: typing.isMissing ? "No title begins with \"" + typing.text + "\"" : typing.text
            textFormat: Text.PlainText
            elide: Text.ElideLeft
            color: Style.text
            font.pixelSize: Style.bodySize

            Accessible.role: Accessible.Notification
            Accessible.name: text
            Accessible.ignored: !typing.isMissing || typing.text === ""
        }
    }
}
