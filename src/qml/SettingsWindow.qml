import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel
import "qrc:/Views/SettingsViews"

// The pages of the settings, applied or cancelled together.
Ostrel.SubWindow {
    id: settings

    property bool isApplied: false

    // A page's view has the name of its view model's class.
    function viewOf(page) {
        return "qrc:/Views/SettingsViews/" + page.ClassName.replace("ViewModel", "View") + ".qml"
    }

    title: qsTr("Настройки")
    width: 800
    height: 560
    minimumWidth: 640
    minimumHeight: 480
    onClosing: {
        if (!isApplied)
            settingsViewModel.cancelCommand()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 12

        Ostrel.TabControl {
            id: tabs

            Layout.fillWidth: true
            Layout.fillHeight: true
            itemsSource: settingsViewModel.InnerSettings
            currentIndex: settingsViewModel.currentIndex
            onCurrentIndexChanged: settingsViewModel.currentIndex = currentIndex
            contentTemplate: PageLoader {
                page: modelData
                view: settings.viewOf(modelData)
            }
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.rightMargin: 12
            Layout.bottomMargin: 8
            spacing: 12

            Button {
                text: qsTr("Отмена")
                onClicked: settings.close()
            }

            Button {
                text: qsTr("Готово")
                onClicked: {
                    settings.isApplied = settingsViewModel.applyCommand()
                    if (settings.isApplied)
                        settings.close()
                }
            }
        }
    }

    Connections {
        target: settingsViewModel
        function onChanged_currentIndex(v) { tabs.currentIndex = v }
    }
}
