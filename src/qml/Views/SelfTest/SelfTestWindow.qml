import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

// The measuring test run: its figures, its log and its buttons.
Ostrel.SubWindow {
    id: tests

    readonly property var viewmodel: selfTestViewModel
    // In characters; a run in a loop has no end, and the report holds all of it.
    readonly property int longestLog: 100000
    readonly property var figures: [
        [qsTr("Ping запросы"), viewmodel.PingCount],
        [qsTr("Ping ответы"), viewmodel.PongCount],
        [qsTr("Минимальная задержка, мс"), viewmodel.MinDelay],
        [qsTr("Максимальная задержка, мс"), viewmodel.MaxDelay],
        [qsTr("Средняя задержка, мс"), viewmodel.AvgDelay]
    ]

    title: qsTr("Тесты")
    width: 640
    height: 520
    minimumWidth: 480
    minimumHeight: 400
    modality: Qt.NonModal

    Connections {
        target: tests.viewmodel
        function onAppendLog(text) {
            // Whoever reads further up is not to lose the place.
            const area = view.contentItem
            const follows = area.atYEnd
            const former = area.contentY
            log.insert(log.length, text)
            if (log.length > tests.longestLog)
                log.remove(0, log.length - tests.longestLog / 2)
            area.contentX = 0
            area.contentY = follows ? Math.max(0, area.contentHeight - area.height) : former
        }
        function onClearLog() { log.clear() }
    }

    ColumnLayout {
        anchors { fill: parent; margins: 20 }
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            GridLayout {
                columns: 2
                columnSpacing: 12
                rowSpacing: 4

                Repeater {
                    model: tests.figures.length * 2

                    Label {
                        readonly property var figure: tests.figures[Math.floor(index / 2)]

                        text: figure[index % 2]
                    }
                }
            }

            Item { Layout.fillWidth: true }

            Button {
                Layout.alignment: Qt.AlignTop
                text: qsTr("Сбросить")
                onClicked: tests.viewmodel.clear()
            }
        }

        ScrollView {
            id: view

            Layout.fillWidth: true
            Layout.fillHeight: true

            TextArea {
                id: log

                backgroundSizeSource: view
                readOnly: true
                wrapMode: TextEdit.NoWrap
                textFormat: TextEdit.PlainText
                Accessible.name: qsTr("Тесты")
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            CheckBox {
                Layout.fillWidth: true
                text: qsTr("Зациклить")
                checked: tests.viewmodel.Loop
                onToggled: tests.viewmodel.Loop = checked
            }

            Button {
                visible: !tests.viewmodel.IsStarted
                enabled: tests.viewmodel.IsConnected
                text: qsTr("Старт")
                onClicked: tests.viewmodel.start()
            }

            Button {
                visible: tests.viewmodel.IsStarted
                enabled: tests.viewmodel.IsConnected
                text: qsTr("Стоп")
                onClicked: tests.viewmodel.stop()
            }

            Button {
                text: qsTr("Выход")
                onClicked: tests.close()
            }
        }
    }
}
