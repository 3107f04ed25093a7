import QtQuick 2.15

// The red corner of a field whose content is refused.
Canvas {
    width: 10
    height: 10
    onPaint: {
        const context = getContext("2d")
        context.reset()
        context.moveTo(10, 6)
        context.lineTo(10, 0)
        context.lineTo(4, 0)
        context.closePath()
        context.fillStyle = "#DC000C"
        context.fill()

        context.beginPath()
        context.moveTo(10, 7)
        context.lineTo(3, 0)
        context.lineWidth = 1.5
        context.lineCap = "round"
        context.strokeStyle = "white"
        context.stroke()
    }
}
