import QtQuick 2.15
import "qrc:/Views/Commands/Edit"

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
