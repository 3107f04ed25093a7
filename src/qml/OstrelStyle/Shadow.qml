import QtQuick 2.15
import QtGraphicalEffects 1.15

// The shadow that a rounded rectangle casts. Without OpenGL there are no effects: a few frames, each
// fainter than the one inside it, look much the same.
Loader {
    id: shadow

    property Rectangle source
    property real offset: 0
    property real radius: 0
    property int samples: 9
    property color color

    anchors.fill: source
    sourceComponent: GraphicsInfo.api === GraphicsInfo.OpenGL ? blurred : layered

    Component {
        id: blurred

        DropShadow {
            source: shadow.source
            horizontalOffset: shadow.offset
            verticalOffset: shadow.offset
            radius: shadow.radius
            samples: shadow.samples
            color: shadow.color
        }
    }

    Component {
        id: layered

        Item {
            Repeater {
                model: shadow.radius

                Rectangle {
                    readonly property int spread: index + 1

                    x: shadow.offset - spread
                    y: shadow.offset - spread
                    width: shadow.width + 2 * spread
                    height: shadow.height + 2 * spread
                    radius: shadow.source.radius + spread
                    color: shadow.color
                    opacity: 1 / (shadow.radius + 1) / spread
                }
            }
        }
    }
}
