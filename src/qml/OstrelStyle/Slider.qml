import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Templates 2.15 as T

T.Slider {
    id: control

    property string toolTipText: ""
    property bool toolTipEnabled: false

    implicitWidth: Math.max(background.implicitWidth, handle.implicitWidth)
    implicitHeight: Math.max(background.implicitHeight, handle.implicitHeight)

    background: Item {
        implicitWidth: control.horizontal ? 200 : 48
        implicitHeight: control.horizontal ? 48 : 200

        Rectangle {
            anchors.centerIn: parent
            width: control.horizontal ? control.availableWidth : 2
            height: control.horizontal ? 2 : control.availableHeight
            color: control.Material.foreground
            border.width: 1
            border.color: "#e0e0e0"
        }
    }

    handle: Rectangle {
        id: knob

        x: control.leftPadding + (control.horizontal
            ? control.visualPosition * (control.availableWidth - width)
            : (control.availableWidth - width) / 2)
        y: control.topPadding + (control.horizontal
            ? (control.availableHeight - height) / 2
            : control.visualPosition * (control.availableHeight - height))
        implicitWidth: 13
        implicitHeight: 13
        radius: width / 2
        color: "#2FBECA"
        border.width: 1
        border.color: control.visualFocus ? "#404040" : "#2FBECA"

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true

            // Only shows the text: the slider itself has to get the press and all that follows.
            onPressed: function(mouse) {
                toolTip.visible = control.toolTipEnabled
                mouse.accepted = false
            }
            onPositionChanged: function(mouse) {
                if (mouse.buttons === Qt.NoButton)
                    toolTip.visible = false
            }
            onExited: if (!control.pressed) toolTip.visible = false
        }

        ToolTip {
            id: toolTip

            x: (knob.width - width) / 2
            y: -height - 4
            delay: 50
            text: control.toolTipText

            contentItem: Text {
                text: toolTip.text
                font: toolTip.font
                color: "#fcfcfc"
            }
        }
    }
}
