import QtQuick

// A hint balloon: a bubble with an arrow that points at something. Taps go through it.
Item {
    id: balloon

    required property QtObject node
    readonly property int arrow: 9
    readonly property int gap: 4
    readonly property int margin: 8
    readonly property rect source: node.source
    readonly property bool isBeside: node.direction === 2 || node.direction === 3
    readonly property bool isBefore: node.direction === 0 || node.direction === 2
    readonly property bool points: node.direction < 4
    readonly property real roomX: parent ? parent.width : 0
    readonly property real roomY: parent ? parent.height : 0

    enabled: false
    visible: node.shown

    // A balloon takes no input, so that only what it lies in tells whether a sheet is over it.
    readonly property bool isInReach: node.shown && parent !== null && parent.enabled

    function within(position, extent, room) {
        return Math.round(Math.max(margin, Math.min(room - margin - extent, position)))
    }

    Rectangle {
        readonly property real side: balloon.arrow * Math.SQRT2

        visible: balloon.points
        width: side
        height: side
        rotation: 45
        color: bubble.color
        antialiasing: true
        x: (balloon.isBeside ? (balloon.isBefore ? bubble.x + bubble.width : bubble.x)
                             : balloon.source.x + balloon.source.width / 2) - side / 2
        y: (balloon.isBeside ? balloon.source.y + balloon.source.height / 2
                             : (balloon.isBefore ? bubble.y + bubble.height : bubble.y)) - side / 2
    }
    Rectangle {
        id: bubble

        readonly property real distance: balloon.gap + balloon.arrow
        readonly property real beside: balloon.isBefore ? balloon.source.x - distance - width
                                                        : balloon.source.x + balloon.source.width + distance
        readonly property real below: balloon.isBefore ? balloon.source.y - distance - height
                                                       : balloon.source.y + balloon.source.height + distance
        readonly property real centredX: balloon.source.x + (balloon.source.width - width) / 2
        readonly property real centredY: balloon.source.y + (balloon.source.height - height) / 2

        Accessible.role: Accessible.Notification
        Accessible.name: balloon.node.text
        Accessible.ignored: !balloon.isInReach

        width: Math.ceil(Math.min(text.implicitWidth + 32, balloon.node.maximumWidth,
                                  balloon.roomX - 2 * balloon.margin))
        height: Math.ceil(text.height + 24)
        radius: Style.controlCorner
        color: Style.accent
        x: balloon.isBeside ? beside : balloon.within(centredX, width, balloon.roomX)
        y: balloon.isBeside || !balloon.points ? balloon.within(centredY, height, balloon.roomY) : below

        Text {
            id: text

            x: 16
            y: 12
            width: parent.width - 32
            text: balloon.node.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Style.accentText
            font { pixelSize: Style.bodySize; weight: Font.Medium }
        }
    }
}
