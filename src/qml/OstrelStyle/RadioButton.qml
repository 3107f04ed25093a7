import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.RadioButton {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(30, implicitContentHeight + topPadding + bottomPadding)
    spacing: 6
    hoverEnabled: true
    font.pointSize: 9
    Accessible.name: text

    contentItem: ChoiceLabel {
        choice: control
        color: "#707070"
    }

    indicator: Item {
        y: (control.height - height) / 2
        implicitWidth: 18
        implicitHeight: 18

        Rectangle {
            objectName: "circle"
            anchors.centerIn: parent
            width: 15
            height: 15
            radius: width / 2
            color: control.activeFocus ? "#0800BFCC"
                                       : control.down || control.hovered ? "#2200BFCC" : "#FFFFFF"
            border.width: 1
            border.color: control.down || control.hovered || control.checked || control.activeFocus
                          ? "#1A8E96" : "#95989A"

            Rectangle {
                objectName: "dot"
                anchors.centerIn: parent
                width: 7
                height: 7
                radius: width / 2
                color: "#1A8E96"
                visible: control.checked
            }
        }
    }
}
