import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Dialogs 1.3

// A phrase and a program, which can be looked for.
TextReplaceEditWindow {
    id: dialog

    textButtons: Button {
        implicitWidth: 40
        text: "..."
        Accessible.name: qsTr("Выбрать файл")
        onClicked: files.open()
    }

    FileDialog {
        id: files

        title: qsTr("Выбрать файл")
        selectExisting: true
        onAccepted: dialog.viewmodel.Text.Text = fileUrl.toString()
    }
}
