import QtQuick 2.15

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
