import QtQuick
import QtQuick.Templates as T

// A slider. Its value is the platform's, except while a finger is on it: then the handle is where the finger is.
T.Slider {
    id: slider

    required property QtObject node
    property bool isFollowing: false
    // Assistive technology asks for the ends of the range by these names.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    readonly property real timeWidth: node.showsTime ? Math.ceil(widestTime.advanceWidth) : 0
    // Where the clock leaves too little of the track, it goes below.
    readonly property bool isNarrow: node.showsTime && width < 2 * timeWidth + 140
    // There it shares the height with the handle.
    readonly property int timeSize: isNarrow ? Math.min(Style.captionSize, 20) : Style.captionSize

    leftPadding: node.showsTime && !isNarrow ? timeWidth + Style.space : 0
    rightPadding: leftPadding
    bottomPadding: isNarrow ? elapsed.implicitHeight : 0

    enabled: node.shown
    visible: node.shown
    hoverEnabled: true
    activeFocusOnTab: true

    // A finger is as large on a small control as on a large one.
    containmentMask: QtObject {
        function contains(point: point): bool { return slider.node.isTouchedAt(point) }
    }

    Accessible.role: Accessible.Slider
    Accessible.name: node.accessibleName
    Accessible.description: node.spokenValue
    Accessible.ignored: !enabled
    Accessible.onIncreaseAction: node.adjust(node.value + node.keyStep)
    Accessible.onDecreaseAction: node.adjust(node.value - node.keyStep)

    // Which part of the track lies before a place.
    function partBefore(place) {
        const part = (place - leftPadding - handle.width / 2) / Math.max(1, availableWidth - handle.width)
        return Math.max(0, Math.min(1, part))
    }

    // The length is the longest time there is.
    TextMetrics {
        id: widestTime

        font.pixelSize: Style.captionSize
        text: slider.node.length.replace(/[0-9]/g, "8")
    }

    function follow() {
        if (pressed || node.tracking)
            return
        isFollowing = true
        from = node.minimum
        to = node.maximum
        stepSize = node.keyStep
        value = node.value
        isFollowing = false
    }

    Component.onCompleted: follow()
    Connections {
        target: slider.node
        function onChanged() { slider.follow() }
    }

    onPressedChanged: {
        if (pressed) {
            node.beginTracking()
        } else {
            node.endTracking()
            follow()
        }
    }
    onMoved: if (pressed) node.track(value)
    // Assistive technology writes the value itself.
    onValueChanged: if (!isFollowing && !pressed && !node.tracking) node.adjust(value)

    Keys.onPressed: event => {
        const distances = new Map([
            [Qt.Key_Left, -node.keyStep], [Qt.Key_Down, -node.keyStep],
            [Qt.Key_Right, node.keyStep], [Qt.Key_Up, node.keyStep],
            [Qt.Key_PageDown, -node.pageStep], [Qt.Key_PageUp, node.pageStep],
            [Qt.Key_Home, node.minimum - node.maximum], [Qt.Key_End, node.maximum - node.minimum]])
        const distance = distances.get(event.key)
        if (distance === undefined)
            return
        node.adjust(node.value + distance)
        event.accepted = true
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => slider.node.turnWheel(event.angleDelta.y / 120)
    }

    background: Item {
        Rectangle {
            id: track

            x: slider.leftPadding + slider.handle.width / 2
            y: Math.round(slider.topPadding + (slider.availableHeight - height) / 2)
            width: slider.availableWidth - slider.handle.width
            height: 4
            radius: 2
            color: Style.track

            Rectangle {
                width: Math.round(slider.visualPosition * parent.width)
                height: parent.height
                radius: parent.radius
                color: slider.node.tint
            }
        }
        Rectangle {
            anchors { fill: track; margins: -2 }
            visible: contrast.high
            color: "transparent"
            radius: height / 2
            border { width: 2; color: Style.text }
        }
        Text {
            id: elapsed

            visible: slider.node.showsTime
            x: slider.isNarrow ? 2 : 0
            width: slider.isNarrow ? undefined : slider.timeWidth
            anchors.verticalCenter: slider.isNarrow ? undefined : track.verticalCenter
            anchors.bottom: slider.isNarrow ? parent.bottom : undefined
            horizontalAlignment: Text.AlignHCenter
            text: slider.node.elapsed
            color: Style.text
            font.pixelSize: slider.timeSize
        }
        Text {
            id: length

            visible: slider.node.showsTime && (!slider.isNarrow || slider.width > 2 * slider.timeWidth + 8)
            x: parent.width - width - (slider.isNarrow ? 2 : 0)
            width: slider.isNarrow ? undefined : slider.timeWidth
            anchors.verticalCenter: slider.isNarrow ? undefined : track.verticalCenter
            anchors.bottom: slider.isNarrow ? parent.bottom : undefined
            horizontalAlignment: Text.AlignHCenter
            text: slider.node.length
            color: Style.secondaryText
            font.pixelSize: slider.timeSize
        }
    }

    handle: Rectangle {
        x: Math.round(slider.leftPadding + slider.visualPosition * (slider.availableWidth - width))
        y: Math.round(slider.topPadding + (slider.availableHeight - height) / 2)
        width: 22
        height: 22
        radius: 11
        color: slider.pressed ? slider.node.tint : Style.text

        Rectangle {
            anchors.centerIn: parent
            width: 36
            height: 36
            radius: 18
            color: slider.node.tint
            opacity: slider.pressed ? 0.35 : 0.2
            visible: slider.pressed || slider.hovered
            z: -1
        }
    }

    HoverHandler { id: hover }
    TimeBubble {
        control: slider
        pointer: hover
    }

    FocusRing {
        visible: slider.visualFocus
        anchors.leftMargin: -4
        anchors.rightMargin: -4
    }
}
