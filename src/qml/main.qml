import QtQuick 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel
import "qrc:/Views/MonitorViews"
import "qrc:/Views/SelfTest"

// The root of all windows: never hidden, one pixel while there is nothing to show.
Ostrel.FixedWindow {
    id: mainWindow

    readonly property Loader themeCheckLoader: monitorViewModel.AlternateThemeView
                                               ? themeCheckLoaderAlternate : themeCheckLoaderDefault

    function bringUp(window) {
        window.raise()
        window.requestActivate()
    }

    function showSettings() {
        if (themeCheckLoader.active) {
            bringUp(themeCheckLoader.item)
        } else if (settingsLoader.active) {
            if (settingsLoader.item.visibility === Window.Minimized)
                settingsLoader.item.show()
            bringUp(settingsLoader.item)
        } else {
            settingsViewModel.onLoad()
            settingsLoader.active = true
        }
    }

    function showReplaces() {
        if (themeCheckLoader.active) {
            bringUp(themeCheckLoader.item)
            return
        }
        replacesLoader.active = true
        bringUp(replacesLoader.item)
    }

    // Of a form that asks before it drops what was written.
    function showForm(loader, viewmodel) {
        if (loader.active) {
            bringUp(loader.item)
        } else {
            viewmodel.onLoad()
            loader.active = true
        }
    }

    // In the middle of the screen, and never larger than it.
    function place(window) {
        window.x = Screen.virtualX + Math.max(20, (Screen.width - window.width) / 2)
        window.y = Screen.virtualY + Math.max(40, (Screen.height - window.height) / 2)
        if (window.x - Screen.virtualX + window.width > Screen.width)
            window.width = Screen.width - 40
        if (window.y - Screen.virtualY + window.height > Screen.height)
            window.height = Screen.height - 80
    }

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
        id: statisticsLoader
        sourceComponent: StatisticsWindow {
            onClosing: {
                if (statisticsViewModel.NeedShow)
                    windowsManager.closeApplication()
                statisticsLoader.active = false
                splashLoader.active = true
            }
        }
        onLoaded: {
            if (!statisticsViewModel.NeedShow) {
                active = false
                splashLoader.active = true
            }
        }
    }

    Loader {
        id: splashLoader
        active: false
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
            onThemeChooseRequested: {
                mainWindow.showSettings()
                settingsViewModel.currentIndex = 2
            }
        }
    }

    Loader {
        id: settingsLoader
        active: false
        sourceComponent: SettingsWindow {
            onClosing: {
                settingsViewModel.onClose()
                settingsLoader.active = false
            }
        }
        onLoaded: mainWindow.place(item)
    }

    Loader {
        id: replacesLoader
        active: false
        sourceComponent: ReplacesWindow {
            onClosing: {
                commandsViewModel.onClose()
                replacesLoader.active = false
            }
        }
        onLoaded: {
            mainWindow.place(item)
            commandsViewModel.onLoad()
        }
    }

    component FormLoader: Loader {
        id: form

        property QtObject viewmodel

        active: false

        Connections {
            target: form.item
            function onClosing(close) {
                if (!form.viewmodel.IsCloseConfirmed)
                    close.accepted = form.viewmodel.cancelCommand()
                if (close.accepted)
                    form.active = false
                form.viewmodel.IsCloseConfirmed = false
            }
        }
    }

    FormLoader {
        id: feedbackLoader
        viewmodel: feedbackViewModel
        sourceComponent: FeedbackWindow {}
    }

    FormLoader {
        id: avocadoLoader
        viewmodel: avocadoViewModel
        sourceComponent: AvocadoWindow {}
    }

    Loader {
        id: selfTestLoader
        active: false
        sourceComponent: SelfTestWindow {
            onClosing: {
                selfTestViewModel.close()
                selfTestLoader.active = false
            }
        }
        onLoaded: {
            mainWindow.place(item)
            selfTestViewModel.load()
        }
    }

    component ThemeCheckLoader: Loader {
        id: themeCheck

        active: false
        onLoaded: recognitionSettingsViewModel.onLoad()

        Connections {
            target: themeCheck.item
            function onClosing() {
                themeCheck.active = false
                if (recognitionSettingsViewModel.ThemeChooseViewModel.NeedShow)
                    windowsManager.closeApplication()
            }
        }
    }

    ThemeCheckLoader {
        id: themeCheckLoaderDefault
        sourceComponent: StartThemeSelectionWindow {}
    }

    ThemeCheckLoader {
        id: themeCheckLoaderAlternate
        sourceComponent: AlternateStartThemeSelectionWindow {}
    }

    Connections {
        target: windowsManager
        function onConnectionStateChanged() {
            splashLoader.active = false
        }
        function onThemeCheckRequested() {
            mainWindow.themeCheckLoader.active = true
            mainWindow.bringUp(mainWindow.themeCheckLoader.item)
        }
        function onWsDisconnected() {
            mainWindow.themeCheckLoader.active = false
        }
    }

    Connections {
        target: systemTray
        function onSignalShowSettings() {
            mainWindow.showSettings()
        }
        function onSignalShowReplaces() {
            mainWindow.showReplaces()
        }
        function onSignalShowFeedback() {
            mainWindow.showForm(feedbackLoader, feedbackViewModel)
        }
        function onSignalShowAvocado() {
            mainWindow.showForm(avocadoLoader, avocadoViewModel)
        }
        function onSignalSelfTest() {
            selfTestLoader.active = true
            mainWindow.bringUp(selfTestLoader.item)
        }
        function onSignalConnectRequest() {
            windowsManager.restartConnection()
        }
        function onSignalShowManual(localHelpFile) {
            Qt.openUrlExternally("file://" + localHelpFile)
        }
        function onSignalQuit() {
            settingsLoader.active = false
            replacesLoader.active = false
            mainWindow.themeCheckLoader.active = false
            monitorLoader.active = false
            windowsManager.closeApplication()
        }
    }
}
