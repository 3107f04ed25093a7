import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls"
import "qrc:/OstrelStyle" as Ostrel

ColumnLayout {
    id: view

    property var viewmodel

    spacing: 10

    Ostrel.HeaderLabel {
        text: qsTr("Устройства записи")
    }

    RowLayout {
        spacing: 6

        Label {
            text: qsTr("Чувствительность микрофона")
        }

        QuestionMark {
            help: qsTr("При низкой чувствительности будет распознаваться меньше шума, но ваша речь тоже станет тише.\nПри высокой чувствительности ваша речь станет громче, но будет слышно фоновый шум и может распознаваться посторонняя речь.")
        }
    }

    RowLayout {
        spacing: 12

        Label {
            text: qsTr("Низкая")
        }

        GainSlider {
            id: gain

            Layout.fillWidth: true
            gain: view.viewmodel.Gain
            onGainMoved: function(value) { view.viewmodel.Gain = value }
        }

        Label {
            text: qsTr("Высокая")
        }
    }

    Ostrel.ErrorLabel {
        Layout.fillWidth: true
        visible: gain.isAttenuating
        wrapMode: Text.WordWrap
        text: qsTr("Активировано цифровое ослабление входного сигнала микрофона, это уменьшает шумы, но может негативно повлиять на качество распознавания.")
    }

    LevelBar {
        Layout.fillWidth: true
        level: view.viewmodel.CurrentLevel
    }

    DeviceChoice {
        Layout.fillWidth: true
        viewmodel: view.viewmodel
    }
}
