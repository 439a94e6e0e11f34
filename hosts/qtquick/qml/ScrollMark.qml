import QtQuick

// Where `flickable`, which lies beside it under the same parent, is scrolled to.
Rectangle {
    required property Flickable flickable
    readonly property real whole: flickable.visibleArea.heightRatio

    anchors.rightMargin: 4
    // Less than a point is what rounding leaves over, and nothing to scroll.
    visible: flickable.contentHeight >= flickable.height + 1
    y: flickable.y + flickable.visibleArea.yPosition * flickable.height
    width: 4
    height: Math.max(24, whole * flickable.height)
    radius: 2
    color: Style.track
}
