import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// One way to start and stop by a key, and the key.
RowLayout {
    id: choice

    property string text
    property bool isChosen: false
    property var keys

    signal chosen()

    spacing: 12

    RadioButton {
        Layout.preferredWidth: 300
        autoExclusive: false
        text: choice.text
        checked: choice.isChosen
        onClicked: {
            choice.chosen()
            checked = Qt.binding(() => choice.isChosen)
        }
    }

    ComboBox {
        id: box

        Layout.fillWidth: true
        enabled: choice.isChosen
        model: choice.keys.Items
        currentIndex: choice.keys.CurrentIndex
        Accessible.name: choice.text
        onActivated: function(index) { choice.keys.CurrentIndex = index }

        Connections {
            target: choice.keys
            function onChanged_CurrentIndex(v) { box.currentIndex = v }
        }
    }
}
