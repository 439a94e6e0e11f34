import QtQuick

// A picture that is made at the very size at which it is shown, as drawings can be.
Image {
    sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio), Math.round(height * Screen.devicePixelRatio))
}
