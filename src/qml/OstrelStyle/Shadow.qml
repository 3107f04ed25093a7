import QtQuick 2.15
import QtGraphicalEffects 1.15

// The shadow that an item casts. Without OpenGL there is none: the effect would only warn.
Loader {
    id: shadow

    property Item source
    property real offset: 0
    property real radius: 0
    property int samples: 9
    property color color

    anchors.fill: source
    active: GraphicsInfo.api === GraphicsInfo.OpenGL
    sourceComponent: DropShadow {
        source: shadow.source
        horizontalOffset: shadow.offset
        verticalOffset: shadow.offset
        radius: shadow.radius
        samples: shadow.samples
        color: shadow.color
    }
}
