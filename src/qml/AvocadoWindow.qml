import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls
import "qrc:/OstrelStyle" as Ostrel

// The user's list of personal words.
Ostrel.SubWindow {
    id: avocado

    readonly property var viewmodel: avocadoViewModel

    title: qsTr("Мои слова")
    width: 480
    height: 480
    minimumWidth: 360
    minimumHeight: 300
    modality: Qt.NonModal

    Component.onCompleted: centerPosition()

    ColumnLayout {
        anchors { fill: parent; margins: 20 }
        spacing: 10

        Controls.HelpedLabel {
            Layout.fillWidth: true
            text: qsTr("Список моих слов")
            help: avocado.viewmodel.Tooltip
        }

        Controls.ScrolledTextArea {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Accessible.name: qsTr("Список моих слов")
            validatable: avocado.viewmodel.AvocadoWords
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: 8
            spacing: 12

            Button {
                text: qsTr("Отмена")
                onClicked: avocado.close()
            }

            Button {
                enabled: avocado.viewmodel.CanSave
                text: qsTr("Сохранить")
                onClicked: {
                    avocado.viewmodel.IsCloseConfirmed = true
                    avocado.close()
                    Qt.callLater(avocadoViewModel.applyCommand)
                }
            }
        }
    }
}
