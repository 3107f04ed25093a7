import QtQuick 2.15
import QtQuick.Controls 2.15

// A sign that explains something to the mouse that rests on it.
Rectangle {
    id: mark

    property string help

    implicitWidth: 16
    implicitHeight: 16
    radius: 8
    color: area.containsMouse ? "#2200BFCC" : "#FFFFFF"
    border.width: 1
    border.color: "#2FBECA"

    Text {
        anchors.centerIn: parent
        text: "?"
        color: "#1A8E96"
        font.pointSize: 8
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
    }

    ToolTip {
        visible: area.containsMouse
        width: 360
        contentItem: Text {
            text: mark.help
            font.pointSize: 9
            color: "#fcfcfc"
            wrapMode: Text.WordWrap
        }
    }
}
