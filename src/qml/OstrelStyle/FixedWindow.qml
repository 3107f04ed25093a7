import QtQuick 2.15
import QtQuick.Window 2.15
import QLN 1.0

QFixedWindow {
    id: subWindow

    visible: false

    function centerPosition() {
        x = (Screen.width - width) / 2
        y = (Screen.height - height) / 2
    }

    Shortcut {
        sequence: "Esc"
        onActivated: subWindow.close()
    }
}
