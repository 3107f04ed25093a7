import QtQuick 2.15
import "qrc:/Controls"
import "qrc:/OstrelStyle" as Ostrel

// Asks for a dictionary before dictation can begin. Closed without a choice, the program ends.
Ostrel.SubWindow {
    property bool isAccepted: false

    // Stores the choice, and closes if it could be stored.
    function apply() {
        isAccepted = recognitionSettingsViewModel.applyCommand()
        if (isAccepted)
            close()
    }

    modality: Qt.ApplicationModal
    background: LogoBackground {
        logoHeight: recognitionSettingsViewModel.LogoHeight
    }
    onClosing: {
        if (isAccepted)
            windowsManager.themeCheckSuccess()
        else
            windowsManager.restartConnection()
    }
    Component.onCompleted: {
        centerPosition()
        Qt.callLater(focusFirst)
    }
}
