import QtQuick
import "qrc:/quillop/screen"

// A button as wide as its title. `subject` says what it is about where the title alone does not.
AlertButton {
    property string subject: ""

    width: titleWidth + 5 * Style.space
    isPreferred: false
    opacity: enabled ? 1 : Style.disabledOpacity

    Accessible.name: subject !== "" ? title + " " + subject : title
}
