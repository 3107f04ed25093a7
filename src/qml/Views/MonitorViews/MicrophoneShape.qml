import QtQuick 2.15
import QtQuick.Shapes 1.15

Shape {
    id: shape

    property color color: "#000000"

    width: 22
    height: 35
    layer.enabled: true
    layer.samples: 8

    ShapePath {
        strokeWidth: -1
        fillColor: shape.color
        PathSvg { path: "M0,11 A11,11 0 0 1 22,11 V24 A11,11 0 0 1 0,24 Z" }
    }
}
