import QtQuick 2.15

// The triangle of a ComboBox.
Canvas {
    property color color

    implicitWidth: 7
    implicitHeight: 4
    onColorChanged: requestPaint()
    onPaint: {
        const context = getContext("2d")
        context.reset()
        context.moveTo(0, 0)
        context.lineTo(width, 0)
        context.lineTo(width / 2, height)
        context.closePath()
        context.fillStyle = color
        context.fill()
    }
}
