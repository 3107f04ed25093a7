import QtQuick 2.15
import QtQuick.Shapes 1.15
import QtQuick.Templates 2.15 as T

T.TabButton {
    id: control

    // A width of its own keeps the bar from making all tabs equally wide.
    width: implicitWidth
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 25
    rightPadding: 25
    topPadding: 5
    bottomPadding: 4
    font.pointSize: 9.5
    // The fallback style would write every tab in bold capitals.
    font.capitalization: Font.MixedCase
    font.weight: Font.Normal
    z: checked ? 1 : -1

    // The text is not aligned within its own width: Qt would draw half a point size as a whole one.
    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: label.implicitHeight

        Text {
            id: label

            anchors.centerIn: parent
            text: control.text
            font: control.font
            color: "#353535"

            DashedFrame {
                anchors.fill: parent
                anchors.leftMargin: -2
                anchors.rightMargin: -2
                visible: control.visualFocus
            }
        }
    }

    background: Shape {
        ShapePath {
            strokeColor: "#C0C0C0"
            strokeWidth: 1
            capStyle: ShapePath.FlatCap
            fillColor: !control.enabled ? "#FAFAFAFA"
                : control.checked || control.down ? "#FFFFFF" : "#FAFAFA"
            startX: 2
            startY: control.height

            PathLine { x: 7; y: 0 }
            PathLine { x: control.width - 7; y: 0 }
            PathLine { x: control.width; y: control.height }
        }
        // The line to the page, on the last row of pixels, where the bar can cover it.
        ShapePath {
            strokeColor: "#C0C0C0"
            strokeWidth: 1
            capStyle: ShapePath.FlatCap
            startX: 2
            startY: control.height - 0.5

            PathLine { x: control.width; y: control.height - 0.5 }
        }
    }
}
