import QtQuick

// A view onto a larger content that is moved sideways: by finger or pointer, wheel, and the arrow keys.
View {
    id: strip

    property alias content: content
    // Less than this part of a page is a finger that trembled, and the page stays.
    readonly property real slack: 0.12

    clip: true
    activeFocusOnTab: true

    Accessible.role: Accessible.Pane
    Accessible.name: node.accessibleName !== "" ? node.accessibleName : "Pages"
    Accessible.focusable: true
    Accessible.ignored: !enabled
    Accessible.onNextPageAction: turn(1)
    Accessible.onPreviousPageAction: turn(-1)

    // Asked for at each use: what was done to the platform since the last frame has not come back as a change yet.
    function page() { return width > 0 ? node.offset.x / width : 0 }
    function turn(pages) { node.turnTo(Math.round(page()) + pages) }

    Keys.onPressed: event => {
        const pages = new Map([
            [Qt.Key_Left, -1], [Qt.Key_Up, -1], [Qt.Key_PageUp, -1], [Qt.Key_Right, 1], [Qt.Key_Down, 1],
            [Qt.Key_PageDown, 1], [Qt.Key_Home, -Math.round(page())], [Qt.Key_End, Infinity]]).get(event.key)
        if (pages === undefined)
            return
        turn(pages)
        event.accepted = true
    }

    Item {
        id: content

        x: -strip.node.offset.x
        y: -strip.node.offset.y
    }

    DragHandler {
        id: finger

        property real from: 0

        target: null
        yAxis.enabled: false
        // A quick finger has moved on, or is even gone again, by the time it is known to be one that swipes.
        onActiveChanged: {
            if (active) {
                from = strip.node.offset.x
                follow()
            } else if (strip.node.pages) {
                strip.settle(from)
            }
        }
        onCentroidChanged: if (active) follow()

        function follow() { strip.node.scrollTo(from + centroid.pressPosition.x - centroid.position.x) }
    }

    // Onto the page towards which the content was moved from `start`.
    function settle(start) {
        const moved = page() - start / width
        node.turnTo(Math.round(start / width) + Math.sign(moved) * Math.ceil(Math.max(0, Math.abs(moved) - slack)))
    }

    WheelHandler {
        orientation: Qt.Vertical
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => wheel.add(event.angleDelta.y)
    }
    WheelHandler {
        orientation: Qt.Horizontal
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => wheel.add(event.angleDelta.x)
    }
    // Touchpads tell of parts of a notch. What comes while a page is turning belongs to the same movement.
    QtObject {
        id: wheel

        property real angle: 0

        function add(delta) {
            angle = strip.node.scrolling ? 0 : angle + delta
            if (Math.abs(angle) < 120)
                return
            strip.turn(angle < 0 ? 1 : -1)
            angle = 0
        }
    }

    FocusRing {
        // Only the keyboard leads here.
        visible: strip.activeFocus
        radius: strip.radius
    }
}
