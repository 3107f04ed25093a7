import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

// Buttons, check boxes, radio buttons and labels in the states that can be set.
Item {
    id: page

    readonly property string longText: "Очень длинная надпись, которой заведомо не хватает места"

    GridLayout {
        anchors.fill: parent
        anchors.margins: 20
        columns: 5
        columnSpacing: 16

        Ostrel.HeaderLabel { text: "В покое" }
        Ostrel.HeaderLabel { text: "В фокусе" }
        Ostrel.HeaderLabel { text: "Нажато" }
        Ostrel.HeaderLabel { text: "Недоступно" }
        Ostrel.HeaderLabel { text: "Длинный текст" }

        Button { objectName: "button"; text: "Записать" }
        Button { text: "Записать"; focus: true }
        Button { text: "Записать"; down: true }
        Button { text: "Записать"; enabled: false }
        Button { text: page.longText; Layout.preferredWidth: 130 }

        Button { text: "Цветная"; background_color: "#DDF3F5" }
        Button { text: "С действием"; action: Action { text: "С действием" } }
        Button { text: "Цветная"; down_color: "#BFE8EC"; down: true }
        Button { text: "Цветная"; background_color: "#DDF3F5"; enabled: false }
        Button { Accessible.name: "Без текста" }

        CheckBox { objectName: "checkBox"; text: "Флажок" }
        CheckBox { text: "Флажок"; checked: true }
        CheckBox { text: "Флажок"; down: true }
        CheckBox { text: "Флажок"; checked: true; enabled: false }
        CheckBox { text: page.longText; Layout.preferredWidth: 150 }

        RadioButton { objectName: "radioButton"; text: "Вариант"; autoExclusive: false }
        RadioButton { text: "Вариант"; checked: true; autoExclusive: false }
        RadioButton { text: "Вариант"; down: true; autoExclusive: false }
        RadioButton { text: "Вариант"; checked: true; enabled: false; autoExclusive: false }
        RadioButton {
            text: page.longText
            autoExclusive: false
            Layout.preferredWidth: 150
        }

        Label { text: "Label" }
        Ostrel.ErrorLabel { text: "ErrorLabel" }
        Ostrel.HeaderLabel { text: "HeaderLabel" }
        Ostrel.LightHeaderLabel { text: "LightHeaderLabel" }
        Ostrel.LightLabel { text: "LightLabel" }

        Label {
            objectName: "link"
            text: "Надпись со <a href='#'>ссылкой</a>"
            activeFocusOnTab: true
        }
        Ostrel.InfoLabel {
            text: "InfoLabel: " + page.longText
            Layout.columnSpan: 4
            Layout.preferredWidth: 260
        }
    }
}
