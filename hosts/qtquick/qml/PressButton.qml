import QtQuick
import QtQuick.Templates as T

// A button that is pressed by finger, pointer, key and assistive technology alike. `name` says what it does.
T.AbstractButton {
    required property string name

    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.ignored: !enabled
    Accessible.onPressAction: clicked()

    Keys.onPressed: event => {
        if ((event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter) || event.isAutoRepeat)
            return
        clicked()
        event.accepted = true
    }
}
