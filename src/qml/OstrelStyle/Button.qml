import QtQuick 2.15
import QtQuick.Controls.impl 2.15
import QtQuick.Templates 2.15 as T

T.Button {
    id: control

    property color background_color: "#FFFFFF"
    property color hovered_color: "#FDFDFD"
    property color down_color: "#F3F3F3"

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: 12
    verticalPadding: 4
    spacing: 6
    hoverEnabled: true
    font.pointSize: 9
    // The theme of the fallback style would write them in bold capitals.
    font.capitalization: Font.MixedCase
    font.weight: Font.Normal
    opacity: enabled ? 1 : 0.9
    Accessible.name: text

    function activate() {
        if (action)
            action.trigger(control)
        else
            clicked()
    }

    Keys.onReturnPressed: {
        if (!event.isAutoRepeat)
            activate()
    }
    Keys.onSpacePressed: {
        if (!event.isAutoRepeat)
            activate()
    }
    // The template clicks on the release of the key.
    Keys.onReleased: {
        if (event.key === Qt.Key_Space)
            event.accepted = true
    }

    contentItem: IconLabel {
        spacing: control.spacing
        mirrored: control.mirrored
        display: control.display
        icon: control.icon
        text: control.text
        font: control.font
        color: control.enabled ? "#353535" : "#A5A5A5"
    }

    background: ButtonFrame {
        button: control
    }
}
