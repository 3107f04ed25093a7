import QtQuick 2.15
import QtQuick.Shapes 1.15

// What holds the microphone: a fork around its lower half, a stem and a foot.
Shape {
    width: 28
    height: 56
    // Smooth edges; without GL the painter makes them, and a layer is empty at double scale.
    layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
    layer.samples: 8

    ShapePath {
        strokeColor: "#000000"
        strokeWidth: 2
        capStyle: ShapePath.RoundCap
        fillColor: "transparent"
        PathSvg { path: "M1,24 V26 A13,13 0 0 0 27,26 V24 M14,40 V55 M6,55 H22" }
    }
}
