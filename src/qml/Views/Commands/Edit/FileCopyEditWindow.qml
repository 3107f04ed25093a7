import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls

// A phrase and a document, with a look at its text.
EditWindow {
    id: dialog

    minimumHeight: 420

    Label {
        text: dialog.executionHeader
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 6

        Controls.ValidatableText {
            Layout.fillWidth: true
            validatable: dialog.viewmodel ? dialog.viewmodel.FilePath : null
            Accessible.name: dialog.executionHeader
        }

        Button {
            implicitWidth: 40
            text: "..."
            Accessible.name: qsTr("Выбрать файл")
            onClicked: dialog.viewmodel.selectFile()
        }
    }

    ScrollView {
        Layout.fillWidth: true
        Layout.fillHeight: true

        TextArea {
            readOnly: true
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            color: dialog.viewmodel && dialog.viewmodel.IsError ? "#CE3535" : "#707070"
            text: dialog.viewmodel ? dialog.viewmodel.PreviewText : ""
            Accessible.name: qsTr("Текст файла")
        }
    }
}
