import QtQuick 2.15
import "qrc:/Views/Commands/Edit"

CommandListView {
    patternHeader: qsTr("Заменяемый текст")
    executionHeader: qsTr("Текст автозамены")
    editWindow: Component {
        TextReplaceEditWindow {
            patternHeader: qsTr("Заменяемый текст")
            executionHeader: qsTr("Текст автозамены")
        }
    }
}
