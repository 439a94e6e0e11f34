import QtQuick

// What lies in the middle of the window and wants an answer: texts, and the buttons below them. Texts that are too long
// for the window are scrolled; the buttons are always in reach.
Rectangle {
    id: card

    default property alias texts: texts.data
    property alias answers: answers.data
    property real largestWidth: 400
    readonly property real contentWidth: width - 2 * Style.margin
    readonly property real roomForTexts: parent.height - 4 * Style.space - 2 * Style.margin - gap - answers.height
    readonly property real gap: 3 * Style.space

    anchors.centerIn: parent
    width: Math.min(parent.width - 4 * Style.space, largestWidth * Math.min(Style.textScale, 1.5))
    height: strip.height + gap + answers.height + 2 * Style.margin
    radius: Style.cardCorner
    color: Style.card
    border { width: 1; color: Style.outline }

    function scroll(distance) {
        strip.contentY = Math.max(0, Math.min(strip.contentHeight - strip.height, strip.contentY + distance))
    }

    Keys.onUpPressed: scroll(-60)
    Keys.onDownPressed: scroll(60)

    Flickable {
        id: strip

        x: Style.margin
        y: Style.margin
        width: card.contentWidth
        height: Math.min(texts.height, card.roomForTexts)
        contentHeight: texts.height
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive

        Column {
            id: texts

            width: parent.width
            spacing: 2 * Style.space
        }
    }
    ScrollMark {
        anchors.right: parent.right
        flickable: strip
    }
    Item {
        id: answers

        x: Style.margin
        y: card.height - Style.margin - height
        width: card.contentWidth
        height: childrenRect.height
    }
}
