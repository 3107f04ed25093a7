import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls
import "qrc:/OstrelStyle" as Ostrel
import "qrc:/Views/StatisticsViews"

// Asks where and as whom the user works, before anything else.
Ostrel.SubWindow {
    id: statistics

    readonly property var viewmodel: statisticsViewModel

    title: qsTr("Данные пользователя")
    width: 620
    height: minimumHeight
    minimumWidth: 480
    minimumHeight: column.implicitHeight + 48
    modality: Qt.NonModal
    visible: false

    Component.onCompleted: {
        if (!viewmodel.NeedShow)
            return
        centerPosition()
        show()
    }

    ColumnLayout {
        id: column

        anchors { fill: parent; margins: 24 }
        spacing: 12

        Image {
            Layout.preferredHeight: statistics.viewmodel.LogoHeight
            fillMode: Image.PreserveAspectFit
            mipmap: true
            source: "qrc:/replaceable/normal_logo.png"
        }

        Ostrel.HeaderLabel {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Введите данные пользователя для начала работы")
        }

        Ostrel.ErrorLabel {
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.WordWrap
            text: statistics.viewmodel.LoadError
        }

        GridLayout {
            Layout.fillWidth: true
            columns: 2
            columnSpacing: 12
            rowSpacing: 12

            Label { text: qsTr("Регион") }

            ProfileChoice {
                Layout.fillWidth: true
                Accessible.name: qsTr("Регион")
                model: statistics.viewmodel.Regions
                chosen: statistics.viewmodel.SelectedRegionIndex
                onChoose: function(index) { statistics.viewmodel.SelectedRegionIndex = index }
            }

            Label { text: qsTr("Населенный пункт") }

            ProfileChoice {
                Layout.fillWidth: true
                Accessible.name: qsTr("Населенный пункт")
                enabled: statistics.viewmodel.IsRegionSelected
                model: statistics.viewmodel.Cities
                chosen: statistics.viewmodel.SelectedCityIndex
                onChoose: function(index) { statistics.viewmodel.SelectedCityIndex = index }
            }

            Label { text: qsTr("Организация") }

            ProfileChoice {
                Layout.fillWidth: true
                Accessible.name: qsTr("Организация")
                enabled: statistics.viewmodel.IsCitySelected
                model: statistics.viewmodel.Companies
                chosen: statistics.viewmodel.SelectedCompanyIndex
                onChoose: function(index) { statistics.viewmodel.SelectedCompanyIndex = index }
            }

            Label { text: qsTr("Кабинет") }

            Controls.ValidatableText {
                Layout.fillWidth: true
                Accessible.name: qsTr("Кабинет")
                enabled: statistics.viewmodel.IsCompanySelected
                validatable: statistics.viewmodel.WorkRoom
            }

            Label { text: qsTr("ФИО") }

            Controls.ValidatableText {
                Layout.fillWidth: true
                Accessible.name: qsTr("ФИО")
                enabled: statistics.viewmodel.IsCompanySelected
                validatable: statistics.viewmodel.UserFullName
                // An empty name is wrong, but not before it can be typed.
                errorText: enabled && validatable ? validatable.Error : ""
            }

            Label { text: qsTr("Специальность") }

            ProfileChoice {
                Layout.fillWidth: true
                Accessible.name: qsTr("Специальность")
                model: statistics.viewmodel.Professions
                chosen: statistics.viewmodel.SelectedProfessionIndex
                onChoose: function(index) { statistics.viewmodel.SelectedProfessionIndex = index }
            }
        }

        Item { Layout.fillHeight: true }

        Button {
            Layout.alignment: Qt.AlignRight
            enabled: statistics.viewmodel.IsValid
            text: qsTr("Подтвердить")
            onClicked: {
                statistics.viewmodel.applyCommand()
                statistics.close()
            }
        }
    }
}
