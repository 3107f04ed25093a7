import QtQuick 2.15
import QtQuick.Shapes 1.15

// A tiny button of lines: dark and faint until the mouse is over it or what it opens is open.
MouseArea {
    id: button

    // What the button does, for screen readers.
    property string name
    // SVG path data in the button's own coordinates.
    property string path
    property bool isOn: false
    readonly property bool isLit: containsMouse || isOn

    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: button.clicked(null)

    Shape {
        anchors.fill: parent
        opacity: button.isLit ? 1 : 0.3
        // Smooth edges; without GL the painter makes them, and a layer is empty at double scale.
        layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
        layer.samples: 8

        ShapePath {
            strokeColor: button.isLit ? "white" : "#000000"
            strokeWidth: 1.5
            capStyle: ShapePath.RoundCap
            joinStyle: ShapePath.RoundJoin
            fillColor: strokeColor
            PathSvg { path: button.path }
        }
    }
}
