import QtQuick 2.15

// A level from 0 to 100.
Rectangle {
    id: bar

    property int level: 0

    implicitHeight: 8
    color: "#F3F3F3"
    border.width: 1
    border.color: "#D5D5D5"

    Rectangle {
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; margins: 1 }
        width: (parent.width - 2) * Math.max(0, Math.min(100, bar.level)) / 100
        color: "#2FBECA"

        Behavior on width { NumberAnimation { duration: 100 } }
    }
}
