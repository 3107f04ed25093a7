import QtQuick 2.15
import QtQuick.Controls 1.4 as Table
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/OstrelStyle" as Ostrel

// The commands of one type, with what can be done to them.
Item {
    id: view

    property var viewmodel
    property string patternHeader
    property string executionHeader
    // The dialog in which one of them is edited.
    property Component editWindow

    readonly property var rows: viewmodel ? viewmodel.FilteredCollection : null
    readonly property bool isReady: visible && Boolean(rows)
    readonly property bool isOwnRow: isReady && Boolean(rows.CurrentObject)
                                     && !rows.CurrentObject.IsSystem

    function edit(title, model) {
        dialog.sourceComponent = editWindow
        dialog.item.title = title
        dialog.item.viewmodel = model
    }

    Action {
        id: addAction
        text: qsTr("Добавить")
        shortcut: "Ins"
        enabled: view.isReady
        onTriggered: view.edit(text, view.viewmodel.newCommand())
    }

    Action {
        id: editAction
        text: qsTr("Изменить")
        shortcut: "F4"
        enabled: view.isOwnRow
        onTriggered: view.edit(text, view.viewmodel.editCommand(view.rows.CurrentObject))
    }

    Action {
        id: deleteAction
        text: qsTr("Удалить выбранное")
        shortcut: "Del"
        enabled: view.isOwnRow
        onTriggered: view.viewmodel.deleteCommand(view.rows.CurrentObject)
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            Button { action: addAction }
            Button { action: editAction }
            Button { action: deleteAction }

            TextField {
                Layout.fillWidth: true
                placeholderText: qsTr("Поиск")
                Accessible.name: qsTr("Поиск")
                text: view.viewmodel ? view.viewmodel.Filter : ""
                onTextEdited: view.viewmodel.Filter = text
            }
        }

        Ostrel.DataGrid {
            id: grid

            Layout.fillWidth: true
            Layout.fillHeight: true
            model: view.rows
            fontColorGetter: function(row) {
                return view.viewmodel.isSystem(row) ? "#99353535" : "#353535"
            }
            onDoubleClicked: editAction.trigger()

            Table.TableViewColumn {
                role: "Pattern"
                title: view.patternHeader
                width: Math.round(grid.width * 0.42)
            }

            Table.TableViewColumn {
                role: "Text"
                title: view.executionHeader
                width: Math.round(grid.width * 0.55)
            }
        }
    }

    Loader {
        id: dialog

        Connections {
            target: dialog.item
            function onClosing() {
                dialog.item.viewmodel = null
                dialog.sourceComponent = undefined
            }
        }
    }
}
