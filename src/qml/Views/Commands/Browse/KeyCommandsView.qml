import QtQuick 2.15
import "qrc:/Views/Commands/Edit"

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
