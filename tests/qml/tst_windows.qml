import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Templates 2.15 as T
import QtQuick.Window 2.15
import QtTest 1.15
import Tests 1.0
import "qrc:/OstrelStyle" as Ostrel

TestCase {
    id: test

    name: "Windows"
    when: windowShown
    width: 200; height: 200; visible: true

    Component {
        id: applicationWindow
        ApplicationWindow {
            readonly property T.Popup popup: T.Popup {
                parent: T.Overlay.overlay
                width: 100; height: 100
                dim: true
                exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: 150 } }
            }

            visible: true
        }
    }
    Component { id: subWindow; Ostrel.SubWindow { } }
    Component { id: fixedWindow; Ostrel.FixedWindow { width: 300; height: 100 } }
    Keyboard { id: keyboard }

    function test_overlayFades_data() {
        return [
            { tag: "modal", modal: true, alpha: 0.5 },
            { tag: "modeless", modal: false, alpha: 0.12 }
        ]
    }
    function test_overlayFades(data) {
        const window = createTemporaryObject(applicationWindow, test)
        compare([window.width, window.height], [912, 513])
        compare([window.minimumWidth, window.minimumHeight], [912, 513])
        tryCompare(window, "active", true)
        window.popup.modal = data.modal
        const started = Date.now()
        window.popup.open()
        const siblings = Array.from(window.popup.parent.children)
        const dim = siblings.find(item => item.strength !== undefined)
        const shadow = window.palette.shadow
        compare(dim.color, Qt.rgba(shadow.r, shadow.g, shadow.b, dim.color.a))
        fuzzyCompare(dim.color.a, data.alpha, 0.01)
        verify(dim.opacity < 1, "it does not darken at once")
        let steps = []
        dim.opacityChanged.connect(() => steps.push(dim.opacity))
        tryCompare(dim, "opacity", 1)
        verify(Date.now() - started >= 140, "it darkens in 150 ms")
        verify(steps.some(opacity => opacity > 0.1 && opacity < 0.9))
        steps = []
        window.popup.close()
        tryCompare(window.popup, "visible", false)
        verify(steps.some(opacity => opacity > 0.1 && opacity < 0.9), "it brightens by and by, too")
    }

    function test_escapeCloses_data() {
        return [
            { tag: "sub window", component: subWindow, shown: true },
            { tag: "fixed window", component: fixedWindow, shown: false }
        ]
    }
    function test_escapeCloses(data) {
        const window = createTemporaryObject(data.component, test)
        compare(window.visible, data.shown)
        window.centerPosition()
        compare([window.x, window.y], [Math.trunc((Screen.width - window.width) / 2),
                                       Math.trunc((Screen.height - window.height) / 2)])
        window.show()
        window.requestActivate()
        // "active" would also be true while only the window of the test has the focus.
        tryVerify(() => window.activeFocusItem !== null)
        keyboard.press("Escape")
        tryCompare(window, "visible", false)
    }

    function test_subWindow() {
        const window = createTemporaryObject(subWindow, test)
        compare([window.width, window.height], [640, 480])
        compare([window.minimumWidth, window.minimumHeight], [400, 200])
        compare(window.flags & Qt.Dialog, Qt.Dialog)
        compare(window.modality, Qt.WindowModal)
        compare(window.background.border.color, "#c0c0c0")
    }
}
