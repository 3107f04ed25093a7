import QtGraphicalEffects 1.15
import QtQuick 2.15

// A microphone in its stand; the microphone fills from below with the sound.
Item {
    id: view

    // 0 to 100
    property int level

    implicitWidth: stand.width
    implicitHeight: stand.height

    StandShape {
        id: stand
        opacity: 0.3
    }

    MicrophoneShape {
        id: microphone
        anchors {
            horizontalCenter: stand.horizontalCenter
            bottom: stand.bottom
            bottomMargin: view.height / 2 - 5
        }
        opacity: 0.3
    }

    MicrophoneShape {
        id: mask
        anchors.fill: microphone
        visible: false
    }

    Item {
        id: meter

        anchors.fill: microphone
        visible: false

        Rectangle {
            id: filling

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: view.level / 100 * microphone.height
            color: "#f8f8ff"

            Behavior on height {
                enabled: view.visible
                NumberAnimation { duration: 100 }
            }
        }
    }

    OpacityMask {
        anchors.fill: microphone
        source: meter
        maskSource: mask
        visible: GraphicsInfo.api !== GraphicsInfo.Software
    }

    // Without effects: the lower part of a microphone of the filling's colour.
    Item {
        anchors { left: microphone.left; right: microphone.right; bottom: microphone.bottom }
        height: filling.height
        clip: true
        visible: GraphicsInfo.api === GraphicsInfo.Software

        MicrophoneShape {
            anchors.bottom: parent.bottom
            color: filling.color
        }
    }
}
