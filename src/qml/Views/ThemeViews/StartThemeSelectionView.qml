import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls"
import "qrc:/OstrelStyle" as Ostrel

// One dictionary out of a list, confirmed by a button.
Item {
    id: view

    signal apply()
    signal cancel()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 12

        Ostrel.LightLabel {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: qsTr("Программное обеспечение для преобразования речи в текст")
        }

        Item { Layout.fillHeight: true }

        Ostrel.HeaderLabel {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Выберите один из установленных словарей")
        }

        ThemesSelectorControl {
            Layout.fillWidth: true
            focus: true
            chooser: recognitionSettingsViewModel.ThemeChooseViewModel
        }

        AutoSelectBox {
            Layout.fillWidth: true
        }

        Ostrel.InfoLabel {
            Layout.fillWidth: true
            text: qsTr("Изменить сделанные настройки можно в меню \"Настройки\" - \"Запуск\"")
        }

        Item { Layout.fillHeight: true }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 12

            Button {
                text: qsTr("Отмена")
                onClicked: view.cancel()
            }

            Button {
                text: qsTr("Готово")
                onClicked: view.apply()
            }
        }
    }
}
