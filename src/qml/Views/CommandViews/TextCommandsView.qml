import QtQuick 2.15

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
