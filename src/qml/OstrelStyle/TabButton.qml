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

    contentItem: Text {
        text: control.text
        font: control.font
        color: "#353535"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter

        DashedFrame {
            anchors.fill: parent
            anchors.leftMargin: -2
            anchors.rightMargin: -2
            visible: control.visualFocus
        }
    }

    background: Shape {
        ShapePath {
            strokeColor: "#C0C0C0"
            strokeWidth: 1
            fillColor: !control.enabled ? "#FAFAFAFA"
                : control.checked || control.down ? "#FFFFFF" : "#FAFAFA"
            startX: 2
            startY: control.height

            PathLine { x: 7; y: 0 }
            PathLine { x: control.width - 7; y: 0 }
            PathLine { x: control.width; y: control.height }
        }
    }
}
