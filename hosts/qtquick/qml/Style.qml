pragma Singleton
import QtQuick

// What all screens have in common: colours, sizes of text, distances, corners and motion. Distances are multiples of 4.
QtObject {
    // Sizes of text follow the desktop's; distances, and what a finger has to hit, stay.
    readonly property real textScale: textSize.scale
    readonly property int captionSize: Math.round(15 * textScale)
    readonly property int bodySize: Math.round(17 * textScale)
    readonly property int titleSize: Math.round(20 * textScale)
    // In places that cannot grow: beyond that, texts side by side would be of very different sizes.
    readonly property real placeScale: Math.min(textScale, 1.5)
    // Of texts that take more lines than one.
    readonly property real lineHeight: 1.15

    // Greys go where the desktop asks for high contrast.
    readonly property color text: "#FFFFFF"
    readonly property color secondaryText: contrast.high ? "#FFFFFF" : "#C6CED3"
    readonly property color dimText: contrast.high ? "#FFFFFF" : "#A9B4BA"
    // Films have colours of their own; this one is the system's, and film 1's.
    readonly property color accent: "#3DA9FC"
    readonly property color accentText: "#0B0E10"

    // Of the focus where everything has a white edge.
    readonly property color focus: "#FFE14D"

    readonly property color background: "#0B0E10"
    readonly property color bar: contrast.high ? "#000000" : "#1B2124"
    readonly property color page: contrast.high ? "#000000" : "#161B1E"
    // A group of rows on a page.
    readonly property color group: contrast.high ? "#000000" : "#20272B"
    readonly property color card: contrast.high ? "#000000" : "#232B30"
    readonly property color outline: contrast.high ? "#FFFFFF" : "#3A454C"
    readonly property color hairline: contrast.high ? "#FFFFFF" : "#2C363C"
    readonly property color control: contrast.high ? "#4D4D4D" : "#39444B"
    readonly property color track: contrast.high ? "#FFFFFF" : "#66737B"
    readonly property color mark: contrast.high ? "#FFFFFF" : "#8A979F"
    readonly property color shade: "#000000"
    readonly property real shadeOpacity: 0.6

    // What lies over a control under the pointer and under the finger.
    readonly property color glow: "#FFFFFF"
    readonly property real hoverOpacity: 0.08
    readonly property real pressOpacity: 0.18
    readonly property real disabledOpacity: 0.5

    readonly property int space: 8
    // Within a card, and at the sides of a page.
    readonly property int margin: 24
    readonly property int sideMargin: 16
    readonly property int controlHeight: 48
    readonly property int cardCorner: 16
    readonly property int controlCorner: 12
    readonly property int smallCorner: 8

    // How long, in milliseconds, something takes to come into sight.
    readonly property int smoothly: 180
}
