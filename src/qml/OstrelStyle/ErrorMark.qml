import QtQuick 2.15
import QtQuick.Shapes 1.15

// The red corner of a field whose content is refused.
Shape {
    width: 10
    height: 10
    // Smooth edges; without GL the painter makes them, and a layer is empty at double scale.
    layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
    layer.samples: 4

    ShapePath {
        fillColor: "#FFDC000C"
        strokeWidth: -1
        startX: 10
        startY: 6

        PathLine { x: 10; y: 0 }
        PathLine { x: 4; y: 0 }
        PathLine { x: 10; y: 6 }
    }

    ShapePath {
        fillColor: "transparent"
        strokeColor: "white"
        strokeWidth: 1.5
        capStyle: ShapePath.RoundCap
        startX: 10
        startY: 7

        PathLine { x: 3; y: 0 }
    }
}
