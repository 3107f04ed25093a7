import QtQuick 2.15

CommandListView {
    patternHeader: qsTr("Команда")
    executionHeader: qsTr("Путь к файлу")
    editWindow: Component {
        FileCopyEditWindow {
            patternHeader: qsTr("Команда")
            executionHeader: qsTr("Путь к файлу")
        }
    }
}
