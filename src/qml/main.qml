import QtQuick 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel

// The root of all windows: never hidden, one pixel while there is nothing to show.
Ostrel.FixedWindow {
    id: mainWindow

    title: "Vellumar (Qt)"
    x: windowsManager.ScreenX + Screen.desktopAvailableWidth - width
    y: windowsManager.ScreenY + Screen.desktopAvailableHeight - height
    width: 1
    height: 1
    minimumWidth: 1
    minimumHeight: 1
    visible: true
    color: "transparent"
    flags: Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.SplashScreen
           | Qt.WindowDoesNotAcceptFocus

    Timer {
        id: startTimer
        interval: 2000
        running: true
        onTriggered: windowsManager.startSubServices()
    }

    Connections {
        target: windowsManager
        // There is no window to choose a dictionary in: go on with the one of the settings.
        function onThemeCheckRequested() {
            windowsManager.themeCheckSuccess()
        }
    }
}
