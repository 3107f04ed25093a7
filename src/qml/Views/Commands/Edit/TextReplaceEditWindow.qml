import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls

// A phrase and one line of text.
EditWindow {
    id: dialog

    // What stands beside the text.
    property alias textButtons: row.data

    Label {
        text: dialog.executionHeader
    }

    RowLayout {
        id: row

        Layout.fillWidth: true
        spacing: 6

        Controls.ValidatableText {
            Layout.fillWidth: true
            validatable: dialog.viewmodel ? dialog.viewmodel.Text : null
            Accessible.name: dialog.executionHeader
        }
    }
}
