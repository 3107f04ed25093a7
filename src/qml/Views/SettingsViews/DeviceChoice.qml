import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The devices of one direction, and whether new ones are followed.
ColumnLayout {
    id: choice

    property var viewmodel

    spacing: 10

    RowLayout {
        spacing: 12

        Label {
            Layout.preferredWidth: 170
            text: qsTr("Текущее устройство")
        }

        ComboBox {
            id: devices

            Layout.fillWidth: true
            model: choice.viewmodel.Devices
            currentIndex: choice.viewmodel.SelectedDeviceIndex
            Accessible.name: qsTr("Текущее устройство")
            onActivated: function(index) { choice.viewmodel.SelectedDeviceIndex = index }

            // The box moves its own index, which ends the binding.
            Connections {
                target: choice.viewmodel
                function onChanged_SelectedDeviceIndex() {
                    devices.currentIndex = choice.viewmodel.SelectedDeviceIndex
                }
            }
        }
    }

    CheckBox {
        text: qsTr("Оповещать о смене устройства")
        checked: choice.viewmodel.IsTrackChanges
        onToggled: choice.viewmodel.IsTrackChanges = checked
    }
}
