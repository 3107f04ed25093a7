import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

Item {
    id: page

    RowLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 32

        ColumnLayout {
            Repeater {
                model: [
                    { text: qsTr("Обычный"), enabled: true, toolTipEnabled: false },
                    { text: qsTr("С подсказкой"), enabled: true, toolTipEnabled: true },
                    { text: qsTr("Недоступный"), enabled: false, toolTipEnabled: false }
                ]

                ColumnLayout {
                    Label { text: modelData.text }
                    Slider {
                        id: slider

                        Accessible.name: modelData.text
                        to: 100
                        stepSize: 1
                        value: 50
                        wheelEnabled: true
                        enabled: modelData.enabled
                        toolTipEnabled: modelData.toolTipEnabled
                        toolTipText: qsTr("%1 %").arg(Math.round(value))
                    }
                }
            }
        }

        Slider {
            Accessible.name: qsTr("Вертикальный")
            Layout.fillHeight: true
            orientation: Qt.Vertical
            to: 100
            value: 50
            wheelEnabled: true
            toolTipEnabled: true
            toolTipText: qsTr("%1 %").arg(Math.round(value))
        }

        Repeater {
            model: [
                { text: qsTr("Полоса при движении"), policy: ScrollBar.AsNeeded, interactive: true },
                { text: qsTr("Полоса всегда"), policy: ScrollBar.AlwaysOn, interactive: true },
                { text: qsTr("Только показывает"), policy: ScrollBar.AlwaysOn, interactive: false },
                { text: qsTr("Без полосы"), policy: ScrollBar.AlwaysOff, interactive: true }
            ]

            ColumnLayout {
                Label { text: modelData.text }
                ListView {
                    Layout.fillHeight: true
                    Layout.preferredWidth: 140
                    clip: true
                    model: 100
                    delegate: Label {
                        text: qsTr("Строка %1").arg(index + 1)
                    }

                    ScrollBar.vertical: ScrollBar {
                        policy: modelData.policy
                        interactive: modelData.interactive
                    }
                }
            }
        }
    }
}
