import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Fields with and without content and errors.
Item {
    id: page

    readonly property string longText: "Очень длинный текст, которому заведомо не хватает места в поле"
    readonly property string message: "Сервер с таким адресом не отвечает, проверьте адрес"

    GridLayout {
        anchors.fill: parent
        anchors.margins: 20
        anchors.topMargin: 50
        columns: 4
        columnSpacing: 20
        rowSpacing: 24

        TextField { objectName: "field"; placeholderText: "Пустое поле" }
        TextField { text: page.longText }
        TextField { text: "Недоступно"; enabled: false }
        TextField { text: "С фокусом"; focus: true }

        TextField { objectName: "marked"; text: "Ошибка отмечена"; errorText: page.message }
        TextField { text: "Показана"; errorText: page.message; isErrorShown: true }
        TextField { text: "Недоступно"; errorText: page.message; enabled: false }
        TextField { text: "Коротко"; errorText: "Нет"; isErrorShown: true }

        ComboBox { objectName: "combo"; model: ["Кардиология", page.longText, "Рентген"] }
        ComboBox { model: [page.longText] }
        ComboBox { model: ["Недоступно"]; enabled: false }
        ComboBox { objectName: "editable"; model: ["Кардиология", "Рентген"]; editable: true }

        ComboBox { objectName: "markedCombo"; model: ["Отмечена"]; errorText: page.message }
        ComboBox { model: ["Показана"]; errorText: page.message; isErrorShown: true }
        ComboBox { model: 0; Accessible.name: "Пустой список" }
        ComboBox { model: ["Нажат"]; down: true }

        TextArea {
            text: page.longText
            Layout.preferredWidth: 180
        }
        TextArea {
            text: page.longText
            errorText: page.message
            isErrorShown: true
            Layout.preferredWidth: 180
        }
        ScrollView {
            id: scroll

            Layout.preferredWidth: 180
            Layout.preferredHeight: 60

            TextArea {
                objectName: "scrolledArea"
                backgroundSizeSource: scroll
                text: page.longText + "\n" + page.longText
                errorText: page.message
            }
        }
        TextArea { placeholderText: "Недоступно"; enabled: false }
    }
}
