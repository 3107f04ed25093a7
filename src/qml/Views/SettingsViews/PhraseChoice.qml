import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Something that a spoken phrase does, and the phrase.
RowLayout {
    id: choice

    property string text
    property bool isOn: false
    property string phrase

    signal switched(bool isOn)
    signal phraseEdited(string phrase)

    spacing: 12

    CheckBox {
        Layout.preferredWidth: 300
        text: choice.text
        checked: choice.isOn
        onToggled: choice.switched(checked)
    }

    TextField {
        Layout.fillWidth: true
        enabled: choice.isOn
        text: choice.phrase
        Accessible.name: choice.text
        onTextEdited: choice.phraseEdited(text)
    }
}
