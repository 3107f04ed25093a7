import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls

// A phrase and a key combination, entered by pressing it.
EditWindow {
    id: dialog

    property var attachedModel: null

    onViewmodelChanged: {
        if (attachedModel)
            attachedModel.detachWindow(keyField)
        attachedModel = viewmodel
        if (attachedModel)
            attachedModel.attachWindow(keyField)
    }

    Label {
        text: dialog.executionHeader
    }

    Controls.ValidatableText {
        id: keyField

        Layout.fillWidth: true
        readOnly: true
        // Escape is a key like others here.
        Keys.onShortcutOverride: function(event) { event.accepted = event.key === Qt.Key_Escape }
        placeholderText: qsTr("Нажмите сочетание клавиш")
        validatable: dialog.viewmodel ? dialog.viewmodel.Text : null
        Accessible.name: dialog.executionHeader
    }

    GridLayout {
        columns: 2
        columnSpacing: 24
        rowSpacing: 0

        CheckBox {
            text: qsTr("Эмулировать CTRL")
            checked: dialog.viewmodel ? dialog.viewmodel.ModCtrl : false
            onToggled: dialog.viewmodel.ModCtrl = checked
        }

        CheckBox {
            text: qsTr("Эмулировать ALT")
            checked: dialog.viewmodel ? dialog.viewmodel.ModAlt : false
            onToggled: dialog.viewmodel.ModAlt = checked
        }

        CheckBox {
            text: qsTr("Эмулировать SHIFT")
            checked: dialog.viewmodel ? dialog.viewmodel.ModShift : false
            onToggled: dialog.viewmodel.ModShift = checked
        }

        CheckBox {
            text: qsTr("Эмулировать WIN")
            checked: dialog.viewmodel ? dialog.viewmodel.ModWin : false
            onToggled: dialog.viewmodel.ModWin = checked
        }
    }
}
