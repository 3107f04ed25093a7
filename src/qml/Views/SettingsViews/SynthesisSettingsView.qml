import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

SettingsPage {
    id: page

    Ostrel.HeaderLabel {
        text: qsTr("Синтез речи")
    }

    Ostrel.ErrorLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: page.viewmodel.ErrorMessage
    }

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 12
        rowSpacing: 10

        Label {
            Layout.preferredWidth: 110
            text: qsTr("Голоса")
        }

        ComboBox {
            id: voices

            Layout.fillWidth: true
            enabled: page.viewmodel.IsTtsEnabled
            model: page.viewmodel.Voices
            currentIndex: page.viewmodel.SelectedVoiceIndex
            Accessible.name: qsTr("Голоса")
            onActivated: function(index) { page.viewmodel.SelectedVoiceIndex = index }

            Connections {
                target: page.viewmodel
                function onChanged_SelectedVoiceIndex(v) { voices.currentIndex = v }
            }
        }

        Label {
            text: qsTr("Скорость")
        }

        Slider {
            Layout.fillWidth: true
            enabled: page.viewmodel.IsTtsEnabled
            from: 0.5
            to: 2.0
            stepSize: 0.1
            snapMode: Slider.SnapAlways
            value: page.viewmodel.TTSSpeed
            toolTipEnabled: true
            toolTipText: value.toFixed(1)
            Accessible.name: qsTr("Скорость")
            onMoved: page.viewmodel.TTSSpeed = value
        }
    }
}
