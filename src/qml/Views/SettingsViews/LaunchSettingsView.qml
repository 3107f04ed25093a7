import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

SettingsPage {
    id: page

    Ostrel.HeaderLabel {
        text: qsTr("Запуск приложения")
    }

    CheckBox {
        Layout.fillWidth: true
        enabled: page.viewmodel.IsAutoStartEnabled
        text: qsTr("Запускать автоматически при входе в систему")
        checked: page.viewmodel.IsAutoStart
        onToggled: page.viewmodel.IsAutoStart = checked
    }

    ColumnLayout {
        Layout.fillWidth: true
        visible: page.viewmodel.IsVACSettingsVisible
        spacing: 10

        PhraseChoice {
            Layout.fillWidth: true
            text: qsTr("Активация голосовой командой")
            isOn: page.viewmodel.IsVoiceActivationEnabled
            phrase: page.viewmodel.VoiceActivationCommand
            onSwitched: function(isOn) { page.viewmodel.IsVoiceActivationEnabled = isOn }
            onPhraseEdited: function(phrase) { page.viewmodel.VoiceActivationCommand = phrase }
        }

        PhraseChoice {
            Layout.fillWidth: true
            text: qsTr("Деактивация голосовой командой")
            isOn: page.viewmodel.IsVoiceDeactivationEnabled
            phrase: page.viewmodel.VoiceDeactivationCommand
            onSwitched: function(isOn) { page.viewmodel.IsVoiceDeactivationEnabled = isOn }
            onPhraseEdited: function(phrase) { page.viewmodel.VoiceDeactivationCommand = phrase }
        }
    }

    KeyChoice {
        Layout.fillWidth: true
        text: qsTr("Активация/деактивация клавиатурой")
        isChosen: page.viewmodel.IsHotKey
        keys: page.viewmodel.HotKeys
        onChosen: page.viewmodel.IsHotKey = true
    }

    KeyChoice {
        Layout.fillWidth: true
        text: qsTr("Активация/деактивация при нажатой клавише")
        isChosen: page.viewmodel.IsPushToTalk
        keys: page.viewmodel.Push2TalkKeys
        onChosen: page.viewmodel.IsPushToTalk = true
    }

    Ostrel.ErrorLabel {
        visible: !page.viewmodel.IsHotKeysAvaliable
        text: qsTr("Активация клавиатурой отключена")
    }

    CheckBox {
        Layout.fillWidth: true
        text: qsTr("Режим вывода в фоновое окно")
        checked: page.viewmodel.IsWriteToControl
        onToggled: page.viewmodel.IsWriteToControl = checked
    }
}
