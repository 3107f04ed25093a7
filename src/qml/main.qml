import QtQuick 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel
import "qrc:/Views/MonitorViews"

// The root of all windows: never hidden, one pixel while there is nothing to show.
Ostrel.FixedWindow {
    id: mainWindow

    title: "Vellumar (Qt)"
    x: windowsManager.ScreenX + windowsManager.ScreenAvailableWidth - 110
    y: windowsManager.ScreenY + windowsManager.ScreenAvailableHeight - 110
    width: monitorViewModel.Visible ? 100 : 1
    height: monitorViewModel.Visible ? 100 : 1
    minimumWidth: 1
    minimumHeight: 1
    visible: true
    color: "transparent"
    modality: Qt.NonModal
    flags: Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.WA_TranslucentBackground
           | Qt.SplashScreen | Qt.WA_ShowWithoutActivating | Qt.WindowDoesNotAcceptFocus
    // A window manager may ask for it all the same; the program ends from its tray.
    onClosing: close.accepted = false

    Rectangle {
        anchors.fill: parent
        border.width: 1
        border.color: "#C0C0C0"
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#f0f0f0" }
            GradientStop { position: 1.0; color: "#fdfdfd" }
        }
    }

    // Leaves the splash time to be drawn before the workers take the processor.
    Timer {
        id: startTimer
        interval: 2000
        onTriggered: windowsManager.startSubServices()
    }

    Loader {
        id: splashLoader
        sourceComponent: SlpashWindow {
            splashSource: "replaceable/splashScreen.png"
            logoSource: "replaceable/logo_white_medium.png"
            logoHeight: monitorViewModel.LogoHeight
            descColor: monitorViewModel.DescColor
            Component.onCompleted: startTimer.start()
        }
    }

    Loader {
        id: monitorLoader
        anchors.fill: parent
        sourceComponent: MonitorView {
            viewmodel: monitorViewModel
            square: mainWindow
        }
    }

    Connections {
        target: windowsManager
        function onConnectionStateChanged() {
            splashLoader.active = false
        }
        // There is no window to choose a dictionary in: go on with the one of the settings.
        function onThemeCheckRequested() {
            windowsManager.themeCheckSuccess()
        }
    }

    Connections {
        target: systemTray
        function onSignalConnectRequest() {
            windowsManager.restartConnection()
        }
        function onSignalShowManual(localHelpFile) {
            Qt.openUrlExternally("file://" + localHelpFile)
        }
        function onSignalQuit() {
            monitorLoader.active = false
            windowsManager.closeApplication()
        }
    }
}
