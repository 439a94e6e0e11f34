import QtQuick

// A layer that no view draws through.
Rectangle {
    required property QtObject node

    color: node.color
    radius: node.cornerRadius
    border { width: node.borderWidth; color: node.borderColor }
}
