import QtQuick
import "qrc:/quillop/screen"

// A button as wide as its title.
TitleButton {
    width: titleWidth + 5 * Style.space
    isPreferred: false
    opacity: enabled ? 1 : Style.disabledOpacity
}
