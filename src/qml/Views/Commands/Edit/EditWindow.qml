import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls" as Controls
import "qrc:/OstrelStyle" as Ostrel

// The frame of the edit dialogs: the phrase, what belongs to the type, and the buttons.
Ostrel.SubWindow {
    id: dialog

    property var viewmodel: null
    property string patternHeader
    property string executionHeader
    default property alias fields: column.data

    function moveFocus(event) {
        const item = activeFocusItem
        const isForward = event.key === Qt.Key_Down || event.key === Qt.Key_Right
        const next = item ? item.nextItemInFocusChain(isForward) : null
        if (next)
            next.forceActiveFocus(isForward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    width: 520
    height: minimumHeight
    minimumHeight: frame.implicitHeight + 40
    modality: Qt.ApplicationModal
    onVisibleChanged: if (visible) pattern.forceActiveFocus()
    Component.onCompleted: {
        centerPosition()
        pattern.forceActiveFocus()
    }

    ColumnLayout {
        id: frame

        anchors { fill: parent; margins: 20 }
        spacing: 12
        Keys.onUpPressed: function(event) { dialog.moveFocus(event) }
        Keys.onDownPressed: function(event) { dialog.moveFocus(event) }

        Label {
            text: dialog.patternHeader
        }

        Controls.ValidatableText {
            id: pattern

            Layout.fillWidth: true
            validatable: dialog.viewmodel ? dialog.viewmodel.Pattern : null
            Accessible.name: dialog.patternHeader
        }

        ColumnLayout {
            id: column

            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 12
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 12
            Keys.onLeftPressed: function(event) { dialog.moveFocus(event) }
            Keys.onRightPressed: function(event) { dialog.moveFocus(event) }

            Button {
                text: qsTr("Отмена")
                onClicked: dialog.close()
            }

            Button {
                text: qsTr("Готово")
                onClicked: {
                    if (!dialog.viewmodel.validate())
                        return
                    dialog.viewmodel.apply()
                    dialog.close()
                }
            }
        }
    }
}
