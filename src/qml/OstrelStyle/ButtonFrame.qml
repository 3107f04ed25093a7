import QtQuick 2.15

// The background of a Button: its face and the shadow of a raised one.
Item {
    property Item button
    readonly property bool isRaised: button.down || button.hovered || button.focus
                                     || button.activeFocus
    readonly property alias color: face.color
    readonly property alias borderColor: face.border.color

    implicitWidth: 100
    implicitHeight: 30

    Shadow {
        source: face
        visible: radius > 0
        radius: isRaised ? 2 : 0
        samples: 5
        color: "#C0000000"
    }

    Rectangle {
        id: face

        anchors.fill: parent
        radius: 1
        border.width: 1
        border.color: !button.enabled ? "#E5E5E5" : isRaised ? "#B5B5B5" : "#D5D5D5"
        color: !button.enabled ? button.background_color
                               : button.down ? button.down_color
                                             : button.hovered ? button.hovered_color
                                                              : button.background_color
    }
}
