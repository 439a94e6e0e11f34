import QtQuick

// The title of a row, in one line or two. Of one that is longer still the end is shown as well as the beginning: names
// of one kind are often told apart by a number or a date at their ends.
Column {
    id: column

    required property string title
    required property color color
    readonly property bool isOneLine: rest.text === ""
    // A name may hold line breaks.
    readonly property string words: title.replace(/\s+/g, " ").trim()
    readonly property string beginning: firstLine(width)

    function fits(text, room) { return metrics.advanceWidth(text) <= room }

    // As much of the title as goes into one line, whole words if possible.
    function firstLine(room) {
        if (words === "" || fits(words, room))
            return words
        let line = ""
        for (const word of words.match(/\S+ ?/g)) {
            if (!fits(word.trim(), room))
                return cutAnywhere(room)
            if (!fits((line + word).trim(), room))
                break
            line += word
        }
        return line
    }

    function cutAnywhere(room) {
        let line = ""
        for (const character of words) {
            if (!fits(line + character, room))
                break
            line += character
        }
        return line
    }

    FontMetrics {
        id: metrics

        font: first.font
    }
    Text {
        id: first

        width: parent.width
        text: column.beginning.trim()
        textFormat: Text.PlainText
        // All rows begin at one edge, whichever way their scripts run.
        horizontalAlignment: Text.AlignLeft
        lineHeight: Style.bodySize + 3
        lineHeightMode: Text.FixedHeight
        color: column.color
        font.pixelSize: Style.bodySize
    }
    Text {
        id: rest

        width: parent.width
        visible: text !== ""
        text: column.words.slice(column.beginning.length)
        textFormat: Text.PlainText
        // All rows begin at one edge, whichever way their scripts run.
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideMiddle
        lineHeight: Style.bodySize + 3
        lineHeightMode: Text.FixedHeight
        color: column.color
        font.pixelSize: Style.bodySize
    }
}
