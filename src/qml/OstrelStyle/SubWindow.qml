import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Controls 2.15

ApplicationWindow {
    id: subWindow

    width: 640
    height: 480
    minimumWidth: 400
    minimumHeight: 200
    flags: Qt.Dialog
    modality: Qt.WindowModal
    visible: true
    // Before, what is given the focus does not get it.
    onActiveChanged: if (active) Qt.callLater(focusFirst)

    background: Rectangle {
        border.width: 1
        border.color: "#C0C0C0"
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#f0f0f0" }
            GradientStop { position: 1.0; color: "#fdfdfd" }
        }
    }

    function centerPosition() {
        x = (Screen.width - width) / 2
        y = (Screen.height - height) / 2
    }

    // Without a focus no key would reach the window, not even Tab.
    function focusFirst() {
        if (!activeFocusItem || activeFocusItem === contentItem)
            contentItem.nextItemInFocusChain(true).forceActiveFocus()
    }

    Shortcut {
        sequence: "Esc"
        onActivated: subWindow.close()
    }
}
