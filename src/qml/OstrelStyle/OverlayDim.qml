import QtQuick 2.15

// What lies between a window and its open popup.
Rectangle {
    property color shadow
    property real strength

    color: Qt.rgba(shadow.r, shadow.g, shadow.b, strength)

    Behavior on opacity {
        NumberAnimation { duration: 150 }
    }
}
