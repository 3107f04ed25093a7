import QtQuick 2.15
import QtQuick.Shapes 1.15

// Says where the keyboard focus is on a control that has no border of its own.
Shape {
    id: frame

    ShapePath {
        strokeColor: "#C0C0C0"
        strokeWidth: 1
        strokeStyle: ShapePath.DashLine
        dashPattern: [4, 4]
        fillColor: "transparent"
        // Half a pixel inside, so that the line covers whole pixels.
        startX: 0.5
        startY: 0.5

        PathLine { x: frame.width - 0.5; y: 0.5 }
        PathLine { x: frame.width - 0.5; y: frame.height - 0.5 }
        PathLine { x: 0.5; y: frame.height - 0.5 }
        PathLine { x: 0.5; y: 0.5 }
    }
}
