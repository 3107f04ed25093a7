import QtQuick 2.15
import "qrc:/OstrelStyle"

// The dictionaries of a chooser, by name and version.
ComboBox {
    id: control

    property var chooser
    readonly property var validatedIndex: chooser.SelectedValidatedThemeIndex

    function nameOf(theme) {
        return theme ? (theme.Name + " " + theme.Version).trim() : ""
    }

    model: chooser.ThemeChoices
    textRole: "user"
    currentIndex: validatedIndex.IntValue
    displayText: nameOf(chooser.SelectedTheme)
    errorText: validatedIndex.Error
    Accessible.name: qsTr("Словарь")
    onActivated: function(index) { validatedIndex.IntValue = index }

    delegate: ComboRow {
        width: ListView.view.width
        text: control.nameOf(modelData)
        isCurrent: control.currentIndex === index
        highlighted: control.highlightedIndex === index
    }

    Connections {
        target: control.validatedIndex
        function onValidateFailed() { control.forceActiveFocus() }
        // The box moves its own index, which ends the binding.
        function onChanged_Value(value) { control.currentIndex = value }
    }

    Connections {
        target: control.chooser
        // Another list may keep the place, which the box has lost with the former list.
        function onChanged_SelectedTheme() {
            control.currentIndex = control.validatedIndex.IntValue
        }
    }
}
