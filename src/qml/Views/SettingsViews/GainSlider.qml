import QtQuick 2.15
import QtQuick.Controls 2.15

// The microphone's gain in percent, with a mark where the signal passes unchanged.
Slider {
    id: slider

    property int gain: 0
    readonly property int zeroDb: 28
    readonly property bool isAttenuating: value < zeroDb

    signal gainMoved(int value)

    function describe(v) {
        if (v < zeroDb)
            return Math.round(v * 40 / zeroDb - 40) + " dB"
        if (v > zeroDb)
            return Math.round((v - zeroDb) / (to - zeroDb) * 100) + "%"
        return "0"
    }

    from: 0
    to: 100
    stepSize: 1
    snapMode: Slider.SnapAlways
    wheelEnabled: true
    value: gain
    toolTipEnabled: true
    toolTipText: describe(value)
    Accessible.name: qsTr("Чувствительность микрофона")
    // The device tells its gain a little late, which is not to move the handle under the hand.
    onGainChanged: if (!pressed) value = gain
    onPressedChanged: if (!pressed) gainMoved(value)
    // By the user alone: a gain beyond the scale stays what it is until then.
    onMoved: gainMoved(value)

    Repeater {
        model: [0, slider.zeroDb, slider.to]

        Rectangle {
            readonly property bool isZero: modelData === slider.zeroDb

            x: slider.leftPadding + slider.handle.width / 2 - width / 2
               + modelData / slider.to * (slider.availableWidth - slider.handle.width)
            y: slider.height / 2 + 9
            width: isZero ? 2 : 1
            height: isZero ? 8 : 5
            color: isZero ? "#1A8E96" : "#C0C0C0"
        }
    }
}
