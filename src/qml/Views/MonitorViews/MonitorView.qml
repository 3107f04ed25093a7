import QtQuick 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel

// The square in the corner of the screen and the windows beside it.
Item {
    id: monitor

    property var viewmodel
    property Window square

    signal themeChooseRequested()

    MicView {
        viewmodel: monitor.viewmodel
        visible: monitor.viewmodel.Visible
    }

    Ostrel.FixedWindow {
        title: "Vellumar (Qt) Result"
        x: monitor.viewmodel.TooltipOnInputWindow
           ? monitor.viewmodel.InputWindowRect.x
             + monitor.viewmodel.InputWindowRect.width / 2 - width / 2
           : square.x + square.width - width
        y: monitor.viewmodel.TooltipOnInputWindow
           ? monitor.viewmodel.InputWindowRect.y
           : square.y - height
        width: resultView.implicitWidth
        height: resultView.implicitHeight
        visible: monitor.viewmodel.ResultTail !== ""
        color: "transparent"
        modality: Qt.NonModal
        flags: Qt.X11BypassWindowManagerHint | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
               | Qt.WA_TranslucentBackground | Qt.WA_TransparentForMouseEvents | Qt.SplashScreen
               | Qt.WA_ShowWithoutActivating | Qt.WindowDoesNotAcceptFocus

        ResultView {
            id: resultView
            text: monitor.viewmodel.ResultTail
        }
    }

    Loader {
        active: monitor.viewmodel.ThemeVisible
        onLoaded: {
            item.raise()
            item.requestActivate()
        }
        sourceComponent: MonitorPopup {
            id: themeWindow

            viewmodel: monitor.viewmodel
            title: "Vellumar (Qt) Theme"
            x: square.x - width - 10
            y: square.y + square.height - height
            width: themeView.width
            height: themeView.height
            flags: Qt.Popup | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
                   | Qt.WA_TranslucentBackground | Qt.WA_TransparentForMouseEvents

            onDismissed: monitor.viewmodel.ThemeVisible = false

            ThemeView {
                id: themeView
                themeName: monitor.viewmodel.ThemeName
                onThemeChooseRequested: monitor.themeChooseRequested()
                Component.onCompleted: themeWindow.visible = true
            }
        }
    }

    Loader {
        active: monitor.viewmodel.GainVisible
        onLoaded: {
            item.raise()
            item.requestActivate()
        }
        sourceComponent: MonitorPopup {
            id: gainWindow

            viewmodel: monitor.viewmodel
            title: "Vellumar (Qt) Gain"
            x: square.x - width - 10
            y: square.y
            width: gainView.width
            height: square.height
            flags: Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
                   | Qt.WA_TranslucentBackground | Qt.WA_TransparentForMouseEvents

            onDismissed: monitor.viewmodel.GainVisible = false

            GainView {
                id: gainView
                viewmodel: monitor.viewmodel
                height: gainWindow.height
                Component.onCompleted: gainWindow.visible = true
            }
        }
    }
}
