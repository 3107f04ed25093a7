import QtQuick 2.15
import QtQuick.Controls 2.15

// Whether the window is to be shown again.
CheckBox {
    text: qsTr("Запомнить мой выбор и не показывать окно")
    checked: recognitionSettingsViewModel.IsThemeAutoSelect
    onToggled: recognitionSettingsViewModel.IsThemeAutoSelect = checked
}
