import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls
import "qrc:/OstrelStyle" as Ostrel

// Reports a word that is recognised wrong.
Ostrel.SubWindow {
    id: feedback

    readonly property var viewmodel: feedbackViewModel

    title: qsTr("Обратная связь")
    width: 560
    height: 560
    minimumWidth: 440
    minimumHeight: 460
    modality: Qt.NonModal

    Component.onCompleted: centerPosition()

    ColumnLayout {
        anchors { fill: parent; margins: 20 }
        spacing: 10

        Label { text: qsTr("Выберите словарь") }

        Controls.ThemesSelectorControl {
            Layout.fillWidth: true
            chooser: feedback.viewmodel.ThemeChooseViewModel
        }

        Label { text: qsTr("Email") }

        Controls.ValidatableText {
            Layout.fillWidth: true
            Accessible.name: qsTr("Email")
            validatable: feedback.viewmodel.Email
        }

        Label { text: qsTr("Фамилия Имя Отчество") }

        Controls.ValidatableText {
            Layout.fillWidth: true
            Accessible.name: qsTr("Фамилия Имя Отчество")
            validatable: feedback.viewmodel.FullName
        }

        RowLayout {
            Layout.fillWidth: true
            visible: feedback.viewmodel.UserConsentVisible
            spacing: 6

            CheckBox {
                text: qsTr("Разрешаю обработку и хранение персональных данных")
                checked: feedback.viewmodel.UserConsentRequested
                onClicked: {
                    feedback.viewmodel.UserConsentRequested = checked
                    feedback.viewmodel.isValid()
                }
            }

            Controls.QuestionMark {
                help: feedback.viewmodel.TooltipUserConsent
            }
        }

        Controls.HelpedLabel {
            Layout.fillWidth: true
            text: qsTr("Введите слово или словосочетание, которое необходимо улучшить")
            help: feedback.viewmodel.Tooltip
        }

        Controls.ScrolledTextArea {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Accessible.name: qsTr("Введите слово или словосочетание, которое необходимо улучшить")
            validatable: feedback.viewmodel.FeedbackText
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: 8
            spacing: 12

            Button {
                text: qsTr("Отмена")
                onClicked: feedback.close()
            }

            Button {
                enabled: feedback.viewmodel.SendEnabled
                text: qsTr("Отправить")
                onClicked: {
                    feedback.viewmodel.IsCloseConfirmed = true
                    feedback.close()
                    // Once this window may go: it waits for the server.
                    Qt.callLater(feedbackViewModel.applyCommand)
                }
            }
        }
    }
}
