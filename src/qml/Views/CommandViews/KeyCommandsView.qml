import QtQuick 2.15

CommandListView {
    patternHeader: qsTr("Голосовая команда")
    executionHeader: qsTr("Сочетание клавиш")
    editWindow: Component {
        HotKeyEditWindow {
            patternHeader: qsTr("Голосовая команда")
            executionHeader: qsTr("Сочетание клавиш")
        }
    }
}
