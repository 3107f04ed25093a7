import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ScrollBar {
    id: control

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 2
    visible: policy !== T.ScrollBar.AlwaysOff
    // The thumb of a very long content stays as long as it is thick.
    minimumSize: orientation === Qt.Horizontal ? height / width : width / height

    contentItem: Rectangle {
        id: thumb

        implicitWidth: control.interactive ? 6 : 2
        implicitHeight: implicitWidth
        color: control.pressed ? "#A0A0A0" : control.hovered ? "#B0B0B0" : "#C0C0C0"
        opacity: 0
    }

    states: State {
        name: "active"
        when: control.policy === T.ScrollBar.AlwaysOn || (control.active && control.size < 1)

        PropertyChanges { target: thumb; opacity: 0.75 }
    }

    transitions: Transition {
        from: "active"

        SequentialAnimation {
            PauseAnimation { duration: 450 }
            NumberAnimation { target: thumb; property: "opacity"; duration: 200; to: 0 }
        }
    }
}
