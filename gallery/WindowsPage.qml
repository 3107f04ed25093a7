import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/OstrelStyle" as Ostrel

Item {
    id: page

    // What the page can open, by the names of its pictures.
    readonly property var demonstrations: ["SubWindow", "FixedWindow", "modal", "modeless"]
    property var shown: null

    // Opens one of them; returns the window, if it is one.
    function demonstrate(name) {
        finish()
        const component = { SubWindow: subWindow, FixedWindow: fixedWindow }[name]
        if (!component) {
            popup.modal = name === "modal"
            popup.open()
            return null
        }
        shown = component.createObject(page.Window.window)
        shown.centerPosition()
        shown.show()
        return shown
    }

    function finish() {
        popup.close()
        if (shown)
            shown.destroy()
        shown = null
    }

    Row {
        anchors.centerIn: parent
        spacing: 16

        Repeater {
            model: page.demonstrations

            Button {
                text: modelData
                onClicked: page.demonstrate(modelData)
            }
        }
    }

    Component {
        id: subWindow

        Ostrel.SubWindow {
            title: "SubWindow"
        }
    }
    Component {
        id: fixedWindow

        Ostrel.FixedWindow {
            title: "FixedWindow"
            width: 320
            height: 200
        }
    }
    T.Popup {
        id: popup

        anchors.centerIn: T.Overlay.overlay
        dim: true
        implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 48
        background: Rectangle {
            border.width: 1
            border.color: "#C0C0C0"
        }
        contentItem: Label {
            text: popup.modal ? "modal" : "modeless"
        }
        // Stays while the window brightens again.
        exit: Transition {
            NumberAnimation { property: "opacity"; to: 0; duration: 150 }
        }
        onClosed: opacity = 1
    }
}
