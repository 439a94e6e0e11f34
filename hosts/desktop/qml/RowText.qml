import QtQuick
import "qrc:/quillop/screen"

// What a row of a group says: a title, and what there is to add to it.
Column {
    id: texts

    required property string title
    property string note: ""

    spacing: Style.space / 4

    Text {
        width: parent.width
        text: texts.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Style.text
        font.pixelSize: Style.bodySize
    }
    Text {
        width: parent.width
        visible: text !== ""
        text: texts.note
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Style.dimText
        font.pixelSize: Style.captionSize
    }
}
