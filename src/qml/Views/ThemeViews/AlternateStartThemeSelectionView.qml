import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

// Each dictionary as a button, which chooses and confirms it.
Item {
    id: view

    readonly property var chooser: recognitionSettingsViewModel.ThemeChooseViewModel

    signal apply()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 12

        Ostrel.HeaderLabel {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Выберите специализацию для работы")
        }

        Ostrel.ErrorLabel {
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.WordWrap
            // There is no button then whose press would tell it.
            text: list.count === 0 ? qsTr("Отсутствуют словари на сервере")
                                   : view.chooser.SelectedValidatedThemeIndex.Error
        }

        ListView {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            spacing: 8
            boundsBehavior: Flickable.StopAtBounds
            model: view.chooser.ThemeChoices
            delegate: ThemeSelectButton {
                width: list.width - 12
                theme: modelData
                onClicked: {
                    view.chooser.SelectedValidatedThemeIndex.IntValue = index
                    view.apply()
                }
            }
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
        }

        AutoSelectBox {
            Layout.fillWidth: true
        }
    }
}
