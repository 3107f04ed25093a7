import QtQuick 2.15
import QtQuick.Shapes 1.15

// The button at an end of a table's scroll bar.
Rectangle {
    id: button

    property bool hovered: false
    property color arrowColor
    // Degrees; 0 points up.
    property real turn: 0

    implicitWidth: 14
    implicitHeight: 14
    color: hovered ? "#FAFAFA" : "#F4F4F4"

    Shape {
        anchors.centerIn: parent
        width: 7
        height: 4
        rotation: button.turn

        ShapePath {
            strokeWidth: -1
            fillColor: button.arrowColor
            startX: 0
            startY: 4

            PathLine { x: 3.5; y: 0 }
            PathLine { x: 7; y: 4 }
            PathLine { x: 0; y: 4 }
        }
    }
}
