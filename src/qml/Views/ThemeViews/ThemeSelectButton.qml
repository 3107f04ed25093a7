import QtQuick 2.15
import QtQuick.Controls 2.15
import "qrc:/OstrelStyle" as Ostrel

// One dictionary: its name, and what it is for.
Button {
    id: button

    property var theme

    text: theme ? theme.Name : ""
    topPadding: 10
    bottomPadding: 10

    contentItem: Column {
        spacing: 4

        Ostrel.LightHeaderLabel {
            width: parent.width
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            text: button.text
        }

        Ostrel.LightLabel {
            width: parent.width
            visible: text !== ""
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            text: button.theme ? button.theme.Description : ""
        }
    }
}
