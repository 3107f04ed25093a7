import QtQuick 2.15
import QtQuick.Controls 2.15

// The microphone's gain.
Rectangle {
    id: view

    property var viewmodel

    width: 18
    color: "#f8f8ff"
    border.width: 1
    border.color: "#A0A0A0"

    Slider {
        id: slider

        anchors { fill: parent; topMargin: 4; bottomMargin: 4 }
        orientation: Qt.Vertical
        to: 100
        stepSize: 1
        wheelEnabled: true
        value: view.viewmodel.Gain
        Accessible.name: qsTr("Громкость микрофона")
    }

    Binding {
        target: view.viewmodel
        property: "Gain"
        value: slider.value
    }
}
