import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls
import "qrc:/OstrelStyle" as Ostrel

SettingsPage {
    id: page

    Ostrel.HeaderLabel {
        text: qsTr("Сетевые настройки")
    }

    Ostrel.ErrorLabel {
        Layout.fillWidth: true
        visible: text !== ""
        wrapMode: Text.WordWrap
        textFormat: Text.PlainText
        text: page.viewmodel.LastConnectionError
    }

    Ostrel.ErrorLabel {
        // Of the ports that have no field here, as they stand in the file.
        readonly property string error: page.viewmodel.ASRServerPort.Error
                                        || page.viewmodel.FormAPIPort.Error
                                        || page.viewmodel.RestProxyPort.Error

        Layout.fillWidth: true
        visible: error !== ""
        wrapMode: Text.WordWrap
        text: qsTr("Файл настроек: %1").arg(error)
    }

    Ostrel.LightHeaderLabel {
        Layout.topMargin: 6
        text: qsTr("Сервер распознавания")
    }

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 12
        rowSpacing: 10

        Label {
            Layout.preferredWidth: 110
            text: qsTr("Хост")
        }

        Controls.ValidatableText {
            Layout.fillWidth: true
            validatable: page.viewmodel.ASRServerHost
            Accessible.name: qsTr("Хост")
        }

        Label {
            text: qsTr("Порт")
        }

        Controls.ValidatableText {
            Layout.preferredWidth: 120
            validatable: page.viewmodel.ASRServerRestPort
            Accessible.name: qsTr("Порт")
        }
    }
}
