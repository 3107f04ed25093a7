import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls"
import "qrc:/OstrelStyle" as Ostrel

SettingsPage {
    id: page

    Ostrel.HeaderLabel {
        text: qsTr("Распознавание речи")
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 12

        Label {
            Layout.preferredWidth: 110
            text: qsTr("Словари")
        }

        ThemesSelectorControl {
            Layout.fillWidth: true
            enabled: page.viewmodel.ThemeSelectEnabled
            chooser: page.viewmodel.ThemeChooseViewModel
        }
    }

    CheckBox {
        Layout.fillWidth: true
        text: qsTr("Запомнить мой выбор и не показывать окно")
        checked: page.viewmodel.IsThemeAutoSelect
        onToggled: page.viewmodel.IsThemeAutoSelect = checked
    }

    CheckBox {
        Layout.fillWidth: true
        text: qsTr("Первое слово после запуска распознавания с большой буквы")
        checked: page.viewmodel.CapitalLetterAfterStart
        onToggled: page.viewmodel.CapitalLetterAfterStart = checked
    }

    CheckBox {
        Layout.fillWidth: true
        visible: page.viewmodel.PunctuationEnabled
        text: qsTr("Расставлять знаки препинания")
        checked: page.viewmodel.UsePunctuation
        onToggled: page.viewmodel.UsePunctuation = checked
    }

    CheckBox {
        Layout.fillWidth: true
        visible: page.viewmodel.CanEnableAvocado
        text: qsTr("Использовать словарь «Мои слова»")
        checked: page.viewmodel.CanEditAvocadoWords
        onToggled: page.viewmodel.CanEditAvocadoWords = checked
    }

    CheckBox {
        Layout.fillWidth: true
        text: qsTr("Разрешить приложению отправлять данные о вашей речевой модели")
        checked: page.viewmodel.SendingMode
        onToggled: page.viewmodel.SendingMode = checked
    }

    Ostrel.InfoLabel {
        Layout.fillWidth: true
        text: qsTr("Мы используем данные о речевой модели для улучшения качества распознавания речи. Речевая модель не содержит персональных данных и не соотнесена с конкретным человеком. Данные отправляются по зашифрованному протоколу HTTPS, безопасность которого обеспечивается SSL-сертификатом, выданным достоверным центром сертификации. Переданные пользовательские данные хранятся в зашифрованном виде. На сервер не передаются документы и письма, собранные для повышения точности распознавания локальной копии приложения.")
    }
}
