import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15

// The microphone that fills with the sound, and the three buttons around it.
Item {
    id: view

    property var viewmodel

    width: 100
    height: 100

    Rectangle {
        anchors.fill: parent
        color: "#f8f8ff"
        border.color: "#A0A0A0"
    }

    Rectangle {
        anchors.centerIn: parent
        width: 92
        height: 92
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#1D5F61" }
            GradientStop { position: 1.0; color: "#33C9C9" }
        }

        MonitorButton {
            anchors { top: parent.top; right: parent.right; margins: 5 }
            width: 13
            height: 13
            name: qsTr("Остановить распознавание")
            path: "M1.5,1.5 L11.5,11.5 M11.5,1.5 L1.5,11.5"
            onClicked: view.viewmodel.closeCommand()
        }

        MonitorButton {
            anchors { top: parent.top; left: parent.left; margins: 5 }
            width: 13
            height: 12
            name: qsTr("Громкость микрофона")
            path: "M2.5,1 V11 M6.5,1 V11 M10.5,1 V11 M1,8 H4 M5,3.5 H8 M9,6.5 H12"
            isOn: view.viewmodel.GainVisible
            onClicked: {
                view.viewmodel.GainVisible = !view.viewmodel.GainVisible
                view.viewmodel.ThemeVisible = false
            }
        }

        MonitorButton {
            anchors { bottom: parent.bottom; left: parent.left; margins: 5 }
            width: 13
            height: 17
            name: qsTr("Словарь")
            path: "M1.75,3 A2,2 0 0 1 3.75,1 H11.25 V12 H3.75 A1.25,1.25 0 0 0 3.75,14.5 H11.25 V16"
                  + " H3.75 A2,2 0 0 1 1.75,14 Z M4.5,3.75 H9 V7 H4.5 Z"
            isOn: view.viewmodel.ThemeVisible
            onClicked: {
                view.viewmodel.ThemeVisible = !view.viewmodel.ThemeVisible
                view.viewmodel.GainVisible = false
            }
        }

        BusyIndicator {
            id: busy

            anchors.centerIn: parent
            running: true
            Material.accent: "#eef8f8ff"
            visible: view.viewmodel.Loading

            function lighten(item) {
                for (let i = 0; i < item.children.length; ++i) {
                    const child = item.children[i]
                    if (child.color !== undefined && Qt.colorEqual(child.color, "transparent"))
                        child.color = "#eef8f8ff"
                    lighten(child)
                }
            }
            Component.onCompleted: lighten(busy)
        }

        Microphone {
            anchors.centerIn: parent
            visible: !view.viewmodel.Loading
            level: view.viewmodel.SoundLevel
        }
    }
}
