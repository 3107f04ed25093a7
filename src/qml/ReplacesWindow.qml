import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

// The user's commands, by dictionary and type.
Ostrel.SubWindow {
    id: replaces

    title: commandsViewModel.HeaderText
    width: 820
    height: 600
    minimumWidth: 640
    minimumHeight: 400

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 8

        ComboBox {
            id: themes

            Layout.fillWidth: true
            Layout.margins: 8
            Layout.bottomMargin: 0
            model: commandsViewModel.Themes
            Accessible.name: qsTr("Словарь")
            onActivated: function(index) { commandsViewModel.ThemeIndex = index }

            Connections {
                target: commandsViewModel
                function onChanged_ThemeIndex(v) { themes.currentIndex = v }
            }
        }

        Ostrel.TabControl {
            id: tabs

            Layout.fillWidth: true
            Layout.fillHeight: true
            itemsSource: commandsViewModel.CommandSetList
            currentIndex: commandsViewModel.typeIndex
            onCurrentIndexChanged: commandsViewModel.typeIndex = currentIndex
            getViewTemplate: function(commands) {
                return "qrc:/Views/Commands/Browse/" + commands.TypeName + "CommandsView.qml"
            }
            contentTemplate: Loader {
                Component.onCompleted: setSource(tabs.getViewTemplate(modelData),
                                                 { viewmodel: modelData })
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            Layout.bottomMargin: 8
            spacing: 12

            Ostrel.ErrorLabel {
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                textFormat: Text.PlainText
                text: commandsViewModel.ErrorText
            }

            Button {
                text: qsTr("Отмена")
                onClicked: {
                    commandsViewModel.cancelCommand()
                    replaces.close()
                }
            }

            Button {
                text: qsTr("Сохранить")
                onClicked: if (commandsViewModel.applyCommand()) replaces.close()
            }
        }
    }

    Connections {
        target: commandsViewModel
        function onChanged_typeIndex(v) { tabs.currentIndex = v }
    }
}
