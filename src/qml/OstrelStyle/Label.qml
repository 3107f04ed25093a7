import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.Label {
    id: control

    color: "#707070"
    linkColor: "#3366BB"
    font.pointSize: 9
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    Accessible.name: text

    MouseArea {
        objectName: "pointer"
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        // Elsewhere the cursor is that of whatever lies under the label.
        cursorShape: control.hoveredLink !== "" ? Qt.PointingHandCursor : undefined
    }

    DashedFrame {
        objectName: "focusFrame"
        anchors.fill: parent
        anchors.leftMargin: -2
        anchors.rightMargin: -2
        visible: control.activeFocus
    }
}
