import QtQuick 2.15
import "qrc:/Views/Commands/Edit"

CommandListView {
    patternHeader: qsTr("Голосовая команда")
    executionHeader: qsTr("Путь к исполняемому файлу")
    editWindow: Component {
        CommandEditWindow {
            patternHeader: qsTr("Голосовая команда")
            executionHeader: qsTr("Путь к исполняемому файлу")
        }
    }
}
