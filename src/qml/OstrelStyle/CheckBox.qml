import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.CheckBox {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(30, implicitContentHeight + topPadding + bottomPadding)
    spacing: 6
    hoverEnabled: true
    font.pointSize: 9
    Accessible.name: text

    contentItem: ChoiceLabel {
        choice: control
        color: control.enabled ? "#707070" : "#C0C0C0"
    }

    indicator: Item {
        y: (control.height - height) / 2
        implicitWidth: 18
        implicitHeight: 18

        Rectangle {
            objectName: "box"
            anchors.centerIn: parent
            width: 15
            height: 15
            color: control.down || control.hovered ? "#2200BFCC" : "#ffffff"
            border.width: 1
            border.color: control.down || control.hovered || control.checked || control.visualFocus
                          ? "#2FBECA" : "#D5D5D5"

            Canvas {
                objectName: "tick"
                anchors.fill: parent
                visible: control.checked
                onPaint: {
                    const context = getContext("2d")
                    context.reset()
                    context.moveTo(3, 8)
                    context.lineTo(6, 10)
                    context.lineTo(11, 5)
                    context.lineWidth = 3
                    context.lineCap = "square"
                    context.strokeStyle = "#1A8E96"
                    context.stroke()
                }
            }
        }
    }
}
