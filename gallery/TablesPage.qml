import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

Item {
    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 16

        Ostrel.TabControl {
            Layout.fillWidth: true
            Layout.preferredHeight: 120
            currentIndex: 1
            itemsSource: [
                { HeaderText: qsTr("Первая") },
                { HeaderText: qsTr("Вторая, с длинным названием") },
                { HeaderText: qsTr("Третья") },
                { HeaderText: qsTr("Недоступная"), isDisabled: true }
            ]
            tabTemplate: Ostrel.TabButton {
                text: modelData.HeaderText
                enabled: !modelData.isDisabled
            }
            contentTemplate: Text {
                padding: 16
                text: qsTr("Страница: %1").arg(modelData.HeaderText)
            }
        }

        Ostrel.DataGrid {
            id: grid

            Layout.fillWidth: true
            Layout.fillHeight: true
            fontColorGetter: function(row) { return row % 5 === 4 ? "#CE3535" : "#353535" }
            model: ListModel {
                id: commands
            }

            TableViewColumn {
                role: "name"
                title: qsTr("Команда")
                width: 240
            }
            TableViewColumn {
                role: "action"
                title: qsTr("Действие")
                width: 420
            }
            TableViewColumn {
                role: "count"
                title: qsTr("Количество")
                width: 300
                horizontalAlignment: Text.AlignRight
            }
        }
    }

    Component.onCompleted: {
        const tail = qsTr(" и затем ещё одно слово")
        for (let i = 0; i < 30; ++i) {
            commands.append({
                name: qsTr("Команда %1").arg(i + 1),
                action: qsTr("Вставить текст") + tail.repeat(i * 3 % 8),
                count: i * 7
            })
        }
        grid.showIndex(1)
    }
}
