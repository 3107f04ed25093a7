import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

SettingsPage {
    id: page

    readonly property var facts: [
        [qsTr("Код региона"), page.viewmodel.RegionCode],
        [qsTr("Название региона"), page.viewmodel.RegionName],
        [qsTr("Населённый пункт"), page.viewmodel.AreaName],
        [qsTr("Название организации"), page.viewmodel.OrganisationName],
        [qsTr("Полное название организации"), page.viewmodel.OrganisationFullName],
        [qsTr("OID организации"), page.viewmodel.OrganisationOID],
        [qsTr("ОГРН организации"), page.viewmodel.OrganisationPSRN],
        [qsTr("Номер кабинета"), page.viewmodel.Room],
        [qsTr("ФИО"), page.viewmodel.UserFullName],
        [qsTr("Специальность"), page.viewmodel.UserSpecialisation]
    ]

    Ostrel.HeaderLabel {
        text: qsTr("Сведения о пользователе")
    }

    Repeater {
        model: page.facts

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            Label {
                Layout.preferredWidth: 190
                Layout.alignment: Qt.AlignTop
                text: modelData[0]
            }

            Ostrel.LightLabel {
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                textFormat: Text.PlainText
                text: modelData[1]
            }
        }
    }

    Button {
        Layout.alignment: Qt.AlignRight
        text: qsTr("Сбросить")
        onClicked: page.viewmodel.resetCommand()
    }
}
