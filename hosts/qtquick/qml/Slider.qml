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

    readonly property real timeWidth: node.showsTime ? Math.max(elapsed.implicitWidth, length.implicitWidth) : 0
    // Where the clock leaves too little of the track, it goes below.
    readonly property bool isNarrow: node.showsTime && width < 2 * timeWidth + 140

    leftPadding: node.showsTime && !isNarrow ? timeWidth + 10 : 0
    rightPadding: leftPadding
    bottomPadding: isNarrow ? 18 : 0

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
        onWheel: event => {
            const notches = (event.angleDelta.y !== 0 ? event.angleDelta.y : event.angleDelta.x) / 120
            slider.node.adjust(slider.node.value + notches * slider.node.pageStep / 2)
        }
    }

    background: Item {
        Rectangle {
            id: track

            x: slider.leftPadding + slider.handle.width / 2
            y: Math.round(slider.topPadding + (slider.availableHeight - height) / 2)
            width: slider.availableWidth - slider.handle.width
            height: 4
            radius: 2
            color: "#59666E"

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
            border { width: 2; color: "#FFFFFF" }
        }
        Text {
            id: elapsed

            visible: slider.node.showsTime
            x: slider.isNarrow ? 2 : 0
            width: slider.isNarrow ? implicitWidth : slider.timeWidth
            anchors.verticalCenter: slider.isNarrow ? undefined : track.verticalCenter
            anchors.bottom: slider.isNarrow ? parent.bottom : undefined
            horizontalAlignment: Text.AlignHCenter
            text: slider.node.elapsed
            color: "#FFFFFF"
            font.pixelSize: 15
        }
        Text {
            id: length

            visible: slider.node.showsTime && (!slider.isNarrow || slider.width > 2 * slider.timeWidth + 8)
            x: parent.width - width - (slider.isNarrow ? 2 : 0)
            width: slider.isNarrow ? implicitWidth : slider.timeWidth
            anchors.verticalCenter: slider.isNarrow ? undefined : track.verticalCenter
            anchors.bottom: slider.isNarrow ? parent.bottom : undefined
            horizontalAlignment: Text.AlignHCenter
            text: slider.node.length
            color: "#C6CED3"
            font { pixelSize: 15 }
        }
    }

    handle: Rectangle {
        x: Math.round(slider.leftPadding + slider.visualPosition * (slider.availableWidth - width))
        y: Math.round(slider.topPadding + (slider.availableHeight - height) / 2)
        width: 22
        height: 22
        radius: 11
        color: slider.pressed ? slider.node.tint : "#FFFFFF"

        Rectangle {
            anchors.centerIn: parent
            width: 34
            height: 34
            radius: 17
            color: slider.node.tint
            opacity: slider.pressed ? 0.35 : 0.2
            visible: slider.pressed || slider.hovered
            z: -1
        }
        Rectangle {
            id: bubble

            visible: slider.pressed && slider.node.showsTime
            // Over the handle, but never beyond the slider's ends.
            x: Math.max(-parent.x, Math.min(slider.width - parent.x - width, (parent.width - width) / 2))
            y: -height - 14
            width: bubbleText.implicitWidth + 24
            height: 36
            radius: 10
            color: slider.node.tint

            Text {
                id: bubbleText

                anchors.centerIn: parent
                text: slider.node.elapsed
                color: "#0B0E10"
                font { pixelSize: 17; weight: Font.DemiBold }
            }
        }
    }

    FocusRing {
        visible: slider.visualFocus
        anchors.leftMargin: -4
        anchors.rightMargin: -4
    }
}
