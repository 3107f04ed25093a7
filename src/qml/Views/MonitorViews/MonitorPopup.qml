import QtQuick 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel

// A small window beside the square that is there only as long as it has the focus.
Ostrel.FixedWindow {
    id: popup

    property var viewmodel
    // While it comes up, the focus may still be on its way from the other popup.
    property bool hadFocus: false

    // It is to go: the focus is elsewhere, or the user has closed it.
    signal dismissed()

    color: "transparent"
    modality: Qt.NonModal

    onVisibleChanged: {
        if (!visible)
            dismissed()
    }

    Connections {
        target: popup
        function onActiveChanged() {
            if (popup.viewmodel.ActiveWindow === popup)
                popup.hadFocus = true
            else if (popup.hadFocus)
                lossTimer.restart()
        }
    }

    // The end of another popup takes the focus from this one for a moment.
    Timer {
        id: lossTimer
        interval: 150
        onTriggered: {
            if (popup.viewmodel.ActiveWindow !== popup)
                popup.dismissed()
        }
    }
}
