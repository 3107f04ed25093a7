import QtQuick 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

ColumnLayout {
    id: view

    property var viewmodel

    spacing: 10

    Ostrel.HeaderLabel {
        text: qsTr("Устройства воспроизведения")
    }

    DeviceChoice {
        Layout.fillWidth: true
        viewmodel: view.viewmodel
    }
}
